#pragma once

#include <QStringList>
#include <filesystem>

class QSettings;

namespace velmora {

// The projects that were open last, the latest first, kept in the profile's section "Recent File List" under
// "File1", "File2" and so on. [main]
class CRecentProjects
{
  public:
    static constexpr int MOST = 8;

    // Reads the list; entries that are no absolute path or stand there twice are left out.
    explicit CRecentProjects(QSettings& profile);

    [[nodiscard]] const QStringList& files() const { return m_files; }

    // Puts a file to the front. The same file under another spelling of its path is one entry.
    void add(const std::filesystem::path& file);
    void remove(const std::filesystem::path& file);
    void clear();

    // An entry as the menu shows it, its number from 1: "&1  Name  -  folder". An ampersand in a name stays
    // one.
    [[nodiscard]] QString menuText(int nNumber) const;

  private:
    void save();

    QSettings& m_profile;
    QStringList m_files;
};

} // namespace velmora
