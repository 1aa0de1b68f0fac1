#pragma once

#include <cstdlib>
#include <iostream>

namespace kavelo {

/// Aborts the process when a requirement does not hold. The fuzzer then keeps the input.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::cerr << "Does not hold: " << what << '\n';
        std::abort();
    }
}

} // namespace kavelo
