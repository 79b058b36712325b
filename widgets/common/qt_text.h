#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

// The engine's texts are UTF-8.

[[nodiscard]] inline QString qs(std::string_view sText)
{
    return QString::fromUtf8(sText.data(), static_cast<qsizetype>(sText.size()));
}

[[nodiscard]] inline std::string utf8(const QString& sText)
{
    return sText.toStdString();
}

[[nodiscard]] inline QString pathText(const std::filesystem::path& path)
{
    return qs(path.string());
}

[[nodiscard]] inline std::filesystem::path pathOf(const QString& sPath)
{
    return {sPath.toStdString()};
}

} // namespace velmora
