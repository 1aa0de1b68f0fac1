#pragma once

#include <cstdlib>
#include <iostream>

namespace kavelo {

/// Ends the process when something that must always hold does not; the fuzzer then keeps the input.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::cerr << "Does not hold: " << what << '\n';
        std::abort();
    }
}

} // namespace kavelo
