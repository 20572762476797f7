#include "common/path.hpp"

#include <cstdlib>

namespace zt4 {

std::string resolvePath(const char* absolutePath) {
    std::string path = absolutePath ? absolutePath : "";
    const char* root = std::getenv("ZT4_ROOT");
    if (root == nullptr || *root == '\0') return path;
    std::string resolved = root;
    while (resolved.size() > 1 && resolved.back() == '/') resolved.pop_back();
    if (resolved == "/") return path;
    return resolved + path;
}

}  // namespace zt4
