#pragma once

#include "base/progress.h"
#include "project/compiler/status_strip.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <string>

namespace velmora {

class CProjectCommands;
class CTonboxDoc;
class IUserDialogs;
struct CRebuildResult;

// The compiler as the window drives it: the status strip with its timer, and the commands that wait for it.
// While one of them waits, the window's events go on. [main]
class CCompilerControl : public QObject, private IProgress, private IStatusStripWindow
{
    Q_OBJECT

  public:
    struct CParts
    {
        CTonboxDoc& m_document;
        CProjectCommands& m_commands;
        IUserDialogs& m_dialogs;
    };

    explicit CCompilerControl(const CParts& parts);

    // Another project is open, or none.
    void projectChanged();

    void startCompiler();
    void toggleDebug();

    // The user chose another compiler. False if it stays as it was.
    bool changeCompiler(int nCompilerId);

    // Writes the code, has it compiled, and loads the result. A call while it runs ends the build.
    void rebuild();
    void cancel() { m_bCancelled = true; }
    [[nodiscard]] bool isBuilding() const { return m_bBuilding; }

    // What one event does to the strip and the timers: messages 2090 to 2096 and 2100 to 2102.
    void onEvent(EStripEvent eEvent) { m_strip.post(eEvent); }

    // Whether the compiler can take an edit: it is up, or needs no window.
    [[nodiscard]] bool isCompilerThere() const;

    // Two texts of a command, such as "Copying" and "Files...".
    void showTexts(std::string_view sLabel, std::string_view sText);

  signals:
    void statusChanged(const QString& sLabel, const QString& sText);
    void buildingChanged(bool bBuilding);
    void debuggingChanged(bool bDebugging);
    void focusWanted();
    void built(bool bLoaded);
    void failed(); // the messages of the compiler stand in the status window

  private:
    [[nodiscard]] bool report(double fDone) override;

    void showStatus(std::string_view sLabel, std::string_view sState) override;
    void setTimer(EStripTimer eTimer, unsigned uMilliseconds) override;
    void killTimer(EStripTimer eTimer) override;
    void takeFocus() override { emit focusWanted(); }
    void setDebugButton(std::string_view sText) override { emit debuggingChanged(sText != "Debug"); }
    void updateLinkerSettings(CDSPProject& project) override;
    [[nodiscard]] bool isPlugInLoaded() override;
    void unloadPlugIn() override;
    void loadBuiltPlugIn(const CBuildReport&) override {} // rebuild() does
    [[nodiscard]] bool writeCode(CDSPProject& project) override;

    void tell(const CRebuildResult& result);

    CParts m_parts;
    CStatusStrip m_strip;
    QTimer m_stateTimer;
    QElapsedTimer m_sinceBuildingTick;
    bool m_bBuilding = false;
    bool m_bCancelled = false;
};

} // namespace velmora
