// Nothing: the program it makes is there for the headers precompiled for it, which all tests take
// over.

int main() {}
