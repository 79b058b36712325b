#pragma once

#include "real/hand.h"
#include "real/jack_server.h"
#include "support/test_support.h"
#include "widgets/shell/designer_view.h"
#include "widgets/shell/main_frame.h"
#include "widgets/shell/tonbox_app.h"

#include <optional>
#include <utility>
#include <vector>

namespace velmora {

class CPropertyGrid;

namespace test {

// The whole program with a user folder of its own, in the dark scheme, on an audio server without hardware;
// and a hand to use it.
class CWorkbench
{
  public:
    CWorkbench();

    // Starts the program anew on the same user folder.
    void restart();

    [[nodiscard]] CHand& hand() { return m_hand; }
    [[nodiscard]] CMainFrame& frame() { return m_app->mainFrame(); }
    [[nodiscard]] CPrototypePanel& panel() { return *m_app->view().panel(); }
    [[nodiscard]] CDesignerView& view() { return m_app->view(); }
    [[nodiscard]] CTonboxDoc& document() { return m_app->document(); }
    [[nodiscard]] std::filesystem::path file(const std::string& sName) const { return m_folder / sName; }

    // A command of the menus.
    void choose(const QStringList& texts);

    // A button of the panel's top line.
    void clickOnPanel(const QString& sName);

    // Types texts into rows of a property window, from top to bottom, by keys alone. A row with a list has
    // the text looked up in it.
    void fillRows(QWidget& window, const std::vector<std::pair<int, QString>>& rows);

    // Writes a wave file of 48 kHz: a tone of one second, then silence, and chooses it in the file chooser.
    void loadTone();

    // A new project, made by the invitation.
    void createProject(const QString& sName);

    // What the variable of the loaded plug-in's control holds; of a meter, its meter variable.
    [[nodiscard]] double variable(UINT uControlId);

    // What every slot shows.
    [[nodiscard]] std::vector<std::string> slotTexts();

    // Keeps a picture in the folder that VELMORA_SCREENSHOTS names, if it does.
    static void keepPicture(const QString& sName, QWidget& widget);

  private:
    CJackServer m_server;
    CTemporaryFolder m_folder;
    std::optional<CTonboxApp> m_app;
    CHand m_hand;
};

// Gives every slot but the first of each kind a control, and the alpha wheel four items, as a large project
// has them. False if one was refused.
[[nodiscard]] bool fillPanel(CWorkbench& workbench);

} // namespace test
} // namespace velmora
