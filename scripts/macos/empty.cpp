#include <chrono>
#include <string>

int main() {}
