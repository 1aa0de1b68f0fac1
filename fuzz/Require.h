#pragma once

#include <cstdio>
#include <cstdlib>

namespace kavelo {

/// Ends the process when something that must always hold does not; the fuzzer then keeps the input.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::fputs("Does not hold: ", stderr);
        std::fputs(what, stderr);
        std::fputc('\n', stderr);
        std::abort();
    }
}

} // namespace kavelo
