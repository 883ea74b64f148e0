// Does nothing, so that all of its time is spent on loading and unloading its libraries.
int main() {}
