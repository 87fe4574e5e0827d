// The smallest process linked like the tool: it loads the same shared libraries and exits.
int main() { return 0; }
