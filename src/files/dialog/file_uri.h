// Paths in file URIs (RFC 8089), as desktops hand them out.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace morvellan::files
{

// The path of "file:///..." or "file://localhost/..." with its percent codes resolved; nothing for any other URI, for a
// broken code and for a path that would hold a zero byte.
std::optional<std::string> pathOfFileUri(std::string_view uri);

}  // namespace morvellan::files
