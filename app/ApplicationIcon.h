#pragma once

#include <QIcon>

namespace kavelo {

/// The program's icon. The program carries it, so that its windows have it also when it is not
/// installed.
[[nodiscard]] QIcon applicationIcon();

} // namespace kavelo
