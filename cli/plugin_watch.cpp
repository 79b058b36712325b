#include "cli/plugin_watch.h"

#include "host/plugin_library.h"

#include <chrono>
#include <thread>
#include <utility>

namespace velmora::cli {

namespace {

std::string listed(const char* pIntroduction, const std::vector<std::string>& names)
{
    std::string sText;
    for (const std::string& sName : names)
        sText += (sText.empty() ? pIntroduction : ", ") + sName;
    return sText;
}

} // namespace

CPlugInWatch::CPlugInWatch(CCommandContext& context, CHeadlessDocument& document,
                           std::filesystem::path library)
    : m_context(context), m_document(document), m_library(std::move(library)),
      m_watch(m_library.parent_path(),
              [sName = m_library.filename().string()](std::string_view sOther) { return sOther == sName; })
{
}

void CPlugInWatch::wait(double dSeconds)
{
    if (m_watch.error().empty() && !m_watch.waitForChanges(dSeconds).empty())
        goOver();
    if (m_watch.error().empty())
        return;
    if (!std::exchange(m_bToldOfError, true))
        m_context.dialogs().showMessage(m_watch.error() +
                                        " The plug-in plays on and is not watched any more.");
    std::this_thread::sleep_for(std::chrono::duration<double>(dSeconds));
}

void CPlugInWatch::goOver()
{
    std::error_code error;
    if (!std::filesystem::exists(m_library, error))
        return; // the next build is about to take its place
    if (!m_document.swapPlugIn(m_library)) {
        m_context.dialogs().showMessage("The build of before plays on.");
        return;
    }
    ++m_uSwaps;
    tellOfNewBuild();
    if (!m_document->transport().hasAudioThread())
        m_context.dialogs().showMessage(
            "The new build is of another kind than the one of before, for which the "
            "stream was open: start anew.");
}

void CPlugInWatch::tellOfNewBuild()
{
    if (m_context.line().has("--quiet"))
        return;
    const CPlugInLoader& loader = m_document->plugInLoader();
    const CControlChanges& changes = loader.changes();
    const std::string sBuild = loader.current()->library()->buildId();
    printToStandardError(m_document->currentFilter()->m_sName + ": build " +
                         (sBuild.empty() ? std::to_string(m_uSwaps + 1) : sBuild) + " plays now" +
                         listed("; values carried over: ", changes.m_carried) +
                         listed("; new: ", changes.m_new) + listed("; dropped: ", changes.m_dropped) + ".");
}

} // namespace velmora::cli
