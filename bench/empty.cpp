// A program that does nothing: what the start of any program costs.
int main() {
    return 0;
}
