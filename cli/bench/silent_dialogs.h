#pragma once

#include "base/user_dialogs.h"

#include <filesystem>
#include <optional>
#include <utility>

namespace velmora::cli {

// Says nothing, answers every question with Yes, and saves into one file.
class CSilentDialogs : public IUserDialogs
{
  public:
    explicit CSilentDialogs(std::optional<std::filesystem::path> target = {}) : m_target(std::move(target)) {}

    void showMessage(std::string_view) override {}
    bool askYesNo(std::string_view) override { return true; }
    bool askOKCancel(std::string_view) override { return true; }
    std::optional<std::filesystem::path> chooseSaveFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return m_target;
    }
    std::optional<std::filesystem::path> chooseOpenFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return {};
    }
    void note(std::string_view) override {}

  private:
    std::optional<std::filesystem::path> m_target;
};

} // namespace velmora::cli
