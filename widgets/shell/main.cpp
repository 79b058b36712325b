#include "base/platform_folders.h"
#include "project/codegen/product_version.h"
#include "widgets/common/qt_text.h"
#include "widgets/shell/main_frame.h"
#include "widgets/shell/tonbox_app.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <algorithm>
#include <memory>
#include <string_view>

namespace {

// Absolute, because the document changes the current directory.
std::filesystem::path absolutePath(const QString& sPath)
{
    std::error_code error;
    const std::filesystem::path path = velmora::pathOf(sPath);
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute;
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    velmora::provideApplicationDataVariable();
    QApplication::setApplicationName("velmora");
    QApplication::setApplicationVersion(velmora::qs(velmora::productVersion()));
    QApplication::setDesktopFileName("velmora");
    // What only asks needs no display.
    const bool bAsks = std::any_of(ppArguments, ppArguments + nArguments, [](std::string_view sArgument) {
        return sArgument == "--help" || sArgument == "-h" || sArgument == "--version" || sArgument == "-v";
    });
    const std::unique_ptr<QCoreApplication> pApplication(bAsks ? new QCoreApplication(nArguments, ppArguments)
                                                               : new QApplication(nArguments, ppArguments));

    QCommandLineParser parser;
    parser.setApplicationDescription("The audio processing lab: write, compile, host and measure plug-ins.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({"no-splash", "Shows the window at once."});
    parser.addOption({"user-folder", "Uses this folder in place of the user folder.", "DIR"});
    parser.addPositionalArgument("PROJECT", "A project file (.prj) to open.", "[PROJECT]");
    parser.process(*pApplication);

    velmora::CStartOptions options;
    options.m_bSplash = !parser.isSet("no-splash");
    if (parser.isSet("user-folder"))
        options.m_userFolder = absolutePath(parser.value("user-folder"));
    if (!parser.positionalArguments().isEmpty())
        options.m_project = absolutePath(parser.positionalArguments().constFirst());

    QApplication::setWindowIcon(QIcon::fromTheme("velmora"));
    velmora::CTonboxApp workbench(*qApp, options);
    if (!workbench.initInstance())
        return 1;
    return QApplication::exec();
}
