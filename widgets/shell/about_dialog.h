#pragma once

#include <QDialog>

namespace velmora {

// "About Velmora(tm)": what the program is, its version, and what it is built on. [main]
class CAboutDialog : public QDialog
{
    Q_OBJECT

  public:
    explicit CAboutDialog(QWidget* pParent = nullptr);

    // What "Copy" puts on the clipboard: the program, Qt, the system and its libraries, one per line.
    [[nodiscard]] static QString versionText();
};

} // namespace velmora
