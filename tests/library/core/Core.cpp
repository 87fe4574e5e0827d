namespace zym
{
const char* coreName() { return "zymCore"; }
} // namespace zym
