#pragma once

#include <QIcon>

namespace kavelo {

/// The program's icon. It is compiled into the program, so that the windows have an icon even when
/// the program is not installed.
[[nodiscard]] QIcon applicationIcon();

} // namespace kavelo
