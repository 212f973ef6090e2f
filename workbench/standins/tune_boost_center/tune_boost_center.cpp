// Stands where the suite's optimisation component is installed. Only its version resource matters.
int main() { return 0; }
