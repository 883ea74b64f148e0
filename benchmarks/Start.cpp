// Does nothing, so that all of its time goes into loading and unloading what it is linked with.
int main() {}
