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

    // The open project is about to go; then another one is open, or none.
    void releaseProject() { m_strip.closeProject(); }
    void projectChanged();

    void startCompiler();
    void toggleDebug();

    // Debugging, if it was begun here, ends, as ahead of another project.
    void stopDebugging() { m_strip.stopDebugging(); }

    // Follows the settings after "Save" of the preferences: with a change of compiler the user is asked first
    // if the one before is at work, and may keep it until a project is opened.
    void applySettings();

    // The compiler of the settings is taken without a question, as ahead of another project.
    void takeChosenCompiler();

    // Writes the code, has it compiled, and loads the result; answers whether it was loaded. A call while it
    // runs ends the build.
    bool rebuild();
    void cancel() { m_bCancelled = true; }
    [[nodiscard]] bool isBuilding() const { return m_bBuilding; }

    // What one event does to the strip and the timers: messages 2090 to 2096 and 2100 to 2102.
    void onEvent(EStripEvent eEvent) { m_strip.post(eEvent); }

    // Whether the compiler can take an edit: it is up, or needs no window.
    [[nodiscard]] bool isCompilerThere() const;

    // Two texts of a command, such as "Copying" and "Files...". They stand until endTexts(), or else until
    // the compiler's state is looked at next.
    void showTexts(std::string_view sLabel, std::string_view sText) { m_strip.show(sLabel, sText); }
    void holdTexts(std::string_view sLabel, std::string_view sText);
    void endTexts();

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
    void setTimer(unsigned uMilliseconds) override;
    void killTimer() override { m_stateTimer.stop(); }
    void takeFocus() override { emit focusWanted(); }
    void setDebugButton(std::string_view sText) override { emit debuggingChanged(sText != "Debug"); }
    void updateLinkerSettings(CDSPProject& project) override;

    [[nodiscard]] IToolchain& choose(int nCompilerId);
    void tell(const CRebuildResult& result);

    CParts m_parts;
    CStatusStrip m_strip;
    QTimer m_stateTimer;
    QElapsedTimer m_sinceBuildingTick;
    bool m_bBuilding = false;
    bool m_bReady = false; // the compiler that the build waited for
    bool m_bCancelled = false;
};

} // namespace velmora
