/* A shared library that is no plug-in: it has no KELPPluginMain. */
int NotAPluginEntry(int n) { return n + 1; }
