#include "cli/command_preset.h"

#include "cli/command_plugin.h"
#include "cli/headless_project.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"
#include "project/dsp_project.h"
#include "project/preset.h"
#include "project/preset_folder.h"

namespace velmora::cli {

namespace {

// What a command on presets works with: the project of --project, its presets, and the plug-in of --plugin.
class CPresetSession
{
  public:
    explicit CPresetSession(CCommandContext& context) : m_context(context), m_project(context) {}

    [[nodiscard]] CHeadlessProject& project() { return m_project; }
    [[nodiscard]] CPresetFolder presets() const { return CPresetFolder(m_projectFolder); }

    // Loads the project, and the plug-in with its options if one is given; a plug-in that was just made
    // writes the factory preset, and onLoaded comes behind that. Answers an exit status.
    [[nodiscard]] int open(bool bNeedsPlugIn, const std::function<bool()>& onLoaded = {})
    {
        const CCommandLine& line = m_context.line();
        if (!line.has("--project"))
            return m_context.usageError("The option --project is missing.");
        if (bNeedsPlugIn && !line.has("--plugin"))
            return m_context.usageError("The option --plugin is missing.");
        if (!m_project.startWith(*line.text("--project")))
            return EXIT_FAILED;
        m_projectFolder = m_project->project()->folder();
        const auto setUp = [&] {
            CPlugIn& plugIn = *m_project.document()->plugInLoader().current()->plugIn();
            return isOfTheProject(plugIn) && presets().setUp(plugIn, m_context.dialogs()) &&
                   (!onLoaded || onLoaded());
        };
        return m_project.document().applyFilterOptions(setUp) ? EXIT_DONE : EXIT_FAILED;
    }

    // The file and the name of a preset.
    void answer(const std::filesystem::path& file, const std::string& sName)
    {
        m_context.m_sResult = file.string() + "\n";
        if (!m_context.json())
            return;
        CJsonWriter json;
        json.beginObject();
        json.member("file", file.string());
        json.member("name", sName);
        json.endObject();
        m_context.m_sResult = json.text();
    }

  private:
    // False for another plug-in, whose values would overwrite the project's factory preset; the user has been
    // told.
    bool isOfTheProject(const CPlugIn& plugIn)
    {
        const std::string sProject = m_project->project()->m_sProjectName;
        const std::filesystem::path library = *m_context.line().text("--plugin");
        if (library.stem() == sProject || (plugIn.m_PlugInName && plugIn.m_PlugInName == sProject))
            return true;
        m_context.dialogs().showMessage("The plug-in " + library.filename().string() +
                                        " does not belong to the project " + sProject + ".");
        return false;
    }

    CCommandContext& m_context;
    CHeadlessProject m_project;
    std::filesystem::path m_projectFolder;
};

std::filesystem::path fileOf(const CPresetSession& session, const std::string& sName)
{
    CPresetFolder presets = session.presets();
    presets.loadPresetNames();
    return presets.find(sName);
}

} // namespace

int runPresetSave(CCommandContext& context)
{
    CPresetSession session(context);
    if (const int nStatus = session.open(true); nStatus != EXIT_DONE)
        return nStatus;
    const std::string sName = *context.line().argument("NAME");
    const bool bSaved =
        session.project().document().runPlugIn([&] { return session.project()->savePreset(sName); });
    if (!bSaved)
        return session.project().refused();
    session.answer(fileOf(session, presetNameLine(sName)), sName);
    return EXIT_DONE;
}

// The preset comes behind the plug-in and ahead of the other options, so that these change what it holds.
int runPresetLoad(CCommandContext& context)
{
    CPresetSession session(context);
    const auto load = [&] { return session.project()->loadPreset(*context.line().argument("NAME")); };
    if (const int nStatus = session.open(true, load); nStatus != EXIT_DONE)
        return nStatus;
    context.m_sResult = plugInResult(session.project().document(), context.json());
    return EXIT_DONE;
}

int runPresetList(CCommandContext& context)
{
    CPresetSession session(context);
    if (const int nStatus = session.open(false); nStatus != EXIT_DONE)
        return nStatus;
    CPresetFolder presets = session.presets();
    presets.loadPresetNames();
    if (!context.json()) {
        CTextTable table({"File", "Name"});
        for (const CPresetFolder::CEntry& entry : presets.entries())
            table.addRow({entry.m_file.filename().string(), entry.m_sName});
        context.m_sResult = table.empty() ? "No presets.\n" : table.text();
        return EXIT_DONE;
    }
    CJsonWriter json;
    json.beginObject();
    json.key("presets");
    json.beginArray();
    for (const CPresetFolder::CEntry& entry : presets.entries()) {
        json.beginObject();
        json.member("file", entry.m_file.string());
        json.member("name", entry.m_sName);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    context.m_sResult = json.text();
    return EXIT_DONE;
}

int runPresetDelete(CCommandContext& context)
{
    CPresetSession session(context);
    if (const int nStatus = session.open(false); nStatus != EXIT_DONE)
        return nStatus;
    const std::string sName = *context.line().argument("NAME");
    const std::filesystem::path file = fileOf(session, sName);
    if (!session.project()->deletePreset(sName))
        return session.project().refused();
    session.answer(file, sName);
    return EXIT_DONE;
}

} // namespace velmora::cli
