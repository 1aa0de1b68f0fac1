#include <poll.h>

/// A program that only wakes every 0.1 s. Its CPU time is the least that a tick of 0.1 s costs, for
/// comparison with the utility.
int main()
{
    while (true) {
        poll(nullptr, 0, 100);
    }
}
