#include "timemachine_linux/files/paths.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/text/utf8.h"

namespace norvane {

namespace {

std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

} // namespace

Result<std::string> canonicalPath(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), std::free);
    if (!resolved)
        return systemFailure();
    return std::string(resolved.get());
}

Result<std::string> resolvedPath(const std::string& path) {
    const std::string trimmed = withoutTrailingSlashes(path);
    const std::size_t slash = trimmed.rfind('/');
    const std::string name = slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
    if (name.empty() || name == "." || name == "..")
        return canonicalPath(trimmed);
    auto parent = canonicalPath(slash == std::string::npos ? "." : trimmed.substr(0, slash + 1));
    if (!parent)
        return parent;
    return *parent == "/" ? "/" + name : *parent + "/" + name;
}

std::string parentOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool isPrintableUtf8(std::string_view bytes) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
    return isValidUtf8(bytes) && std::none_of(bytes.begin(), bytes.end(), isControl);
}

std::string printable(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        std::size_t length = std::min<std::size_t>(4, bytes.size()); // no character of UTF-8 is longer
        while (length > 0 && !isPrintableUtf8(bytes.substr(0, length)))
            --length;
        if (length == 0) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\#%03o", static_cast<unsigned char>(bytes.front()));
            text += code.data();
            length = 1;
        } else {
            text += bytes.substr(0, length);
        }
        bytes.remove_prefix(length);
    }
    return text;
}

PropertyList pathToPropertyList(const std::string& path) {
    if (isPrintableUtf8(path))
        return {path};
    return {PropertyListData{path}};
}

std::vector<std::string> pathsFromPropertyList(const PropertyList& list, const std::string& home) {
    std::vector<std::string> paths;
    if (!list.array())
        return paths;
    for (const PropertyList& entry : *list.array()) {
        std::string path;
        if (entry.string())
            path = *entry.string();
        else if (entry.data())
            path = entry.data()->bytes;
        if (path == "~" || path.starts_with("~/"))
            path.replace(0, 1, home);
        if (path.starts_with('/') && path.find('\0') == std::string::npos)
            paths.push_back(withoutTrailingSlashes(std::move(path)));
    }
    return paths;
}

} // namespace norvane
