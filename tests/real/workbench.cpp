#include "real/workbench.h"

#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/dsp_filter.h"
#include "plugin.h"
#include "project/control_list.h"
#include "project/control_slots.h"
#include "support/wave_bytes.h"
#include "widgets/common/property_grid.h"
#include "widgets/common/qt_text.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/shell/preferences_edit.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMenuBar>
#include <QSettings>
#include <gtest/gtest.h>
#include <numbers>

namespace velmora::test {

namespace {

constexpr const char* PICTURES = "VELMORA_SCREENSHOTS";
constexpr int PERIOD = 64;
constexpr int QUIET_PERIOD = 1024; // no gaps in pictures, however busy the machine
constexpr int RATE = 48000;        // Hz
constexpr double TONE = 440.0;     // Hz
constexpr double AMPLITUDE = 0.8;

std::string toneFile()
{
    std::vector<double> samples(std::size_t(RATE) * 5, 0.0); // 2.5 s of two channels
    for (std::size_t uFrame = 0; uFrame < RATE; ++uFrame)
        samples[2 * uFrame] = samples[2 * uFrame + 1] =
            AMPLITUDE * std::sin(2.0 * std::numbers::pi * TONE * static_cast<double>(uFrame) / RATE);
    CWaveBytesFormat format;
    format.m_uRate = RATE;
    return waveBytes(format, samples);
}

} // namespace

CWorkbench::CWorkbench() : m_server(RATE, qEnvironmentVariableIsSet(PICTURES) ? QUIET_PERIOD : PERIOD)
{
    QSettings profile(pathText(m_folder / "Velmora.ini"), QSettings::IniFormat);
    profile.setValue(qs(COLOUR_SCHEME_KEY), static_cast<int>(EColourScheme::Dark));
    profile.sync();
    restart();
}

void CWorkbench::restart()
{
    m_app.reset();
    CStartOptions options;
    options.m_userFolder = m_folder.path();
    options.m_bSplash = false;
    m_app.emplace(*qApp, options);
    if (!m_app->initInstance())
        throw std::runtime_error("the workbench does not start");
    m_hand.face(frame());
}

void CWorkbench::choose(const QStringList& texts)
{
    m_hand.choose(*frame().menuBar(), texts);
}

void CWorkbench::clickOnPanel(const QString& sName)
{
    m_hand.click(named(panel(), sName));
}

void CWorkbench::fillRows(QWidget& window, const std::vector<std::pair<int, QString>>& rows)
{
    auto* pGrid = window.findChild<CPropertyGrid*>();
    const auto isTyping = [] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr; };
    m_hand.face(window);
    for (const auto& [nRow, sText] : rows) {
        if (isTyping() && pGrid->selectedRow() != nRow)
            m_hand.key(Qt::Key_Return);
        EXPECT_TRUE(CHand::waitFor([&] { return pGrid->selectedRow() == nRow || !isTyping(); }));
        for (int nStep = 0; nStep < pGrid->rowCount() && pGrid->selectedRow() < nRow; ++nStep)
            m_hand.key(Qt::Key_Down);
        EXPECT_EQ(pGrid->selectedRow(), nRow);
        m_hand.key(Qt::Key_F2);
        if (auto* pBox = qobject_cast<QComboBox*>(QApplication::focusWidget())) {
            m_hand.choose(*pBox, sText);
        } else {
            m_hand.key(Qt::Key_A, Qt::ControlModifier);
            m_hand.type(sText);
            m_hand.key(Qt::Key_Return);
        }
        EXPECT_TRUE(CHand::waitFor([&] { return !isTyping(); }));
        EXPECT_EQ(pGrid->text(nRow), sText) << "row " << nRow;
    }
}

void CWorkbench::loadTone()
{
    const std::filesystem::path tone = m_folder / "tone.wav";
    writeFile(tone, toneFile());
    m_hand.inDialog(
        [&] {
            choose({"Audio/MIDI", "Load Audio File"});
        },
        [&](QDialog& dialog) {
            auto* pName = dialog.findChild<QLineEdit*>();
            pName->setCompleter(nullptr); // what it offers comes at any moment
            m_hand.click(*pName);
            m_hand.type(pathText(tone));
            m_hand.clickButton(dialog, "Open");
        });
    EXPECT_EQ(document().transport().waveFile(), tone);
}

void CWorkbench::createProject(const QString& sName)
{
    m_hand.inDialog([&] { clickOnPanel("New Project..."); },
                    [&](QDialog& dialog) {
                        m_hand.click(named(dialog, "Project Name"));
                        m_hand.type(sName);
                        m_hand.clickButton(dialog, "OK");
                    });
    if (!document().project())
        throw std::runtime_error("no project was made");
}

double CWorkbench::variable(UINT uControlId)
{
    const CDSPFilter* pFilter = document().currentFilter();
    const CUICtrl* pControl = pFilter && pFilter->m_pPlugIn
                                  ? findControl(pFilter->m_pPlugIn->m_UIControlList, uControlId)
                                  : nullptr;
    if (!pControl)
        throw std::runtime_error("the plug-in has no control " + std::to_string(uControlId));
    if (pControl->m_pCurrentMeterValue)
        return static_cast<double>(*pControl->m_pCurrentMeterValue);
    return pControl->m_pUserCookedUINTData ? *pControl->m_pUserCookedUINTData
                                           : static_cast<double>(*pControl->m_pUserCookedFloatData);
}

std::vector<std::string> CWorkbench::slotTexts()
{
    std::vector<std::string> texts;
    for (const CControlSlots& kind : controlSlots()) {
        for (UINT uSlot = kind.m_uFirstId; uSlot <= kind.m_uLastId; ++uSlot) {
            const CPanelSlotState state = view().model().state(uSlot);
            if (!state.m_bAssigned)
                continue;
            std::string sText = std::to_string(uSlot) + ": " + state.m_sName + ", " + state.m_sValue +
                                " at " + std::to_string(state.m_nPos) + ", item " +
                                std::to_string(state.m_nItem);
            for (const std::string& sItem : state.m_items)
                sText += " " + sItem;
            texts.push_back(sText);
        }
    }
    return texts;
}

void CWorkbench::keepPicture(const QString& sName, QWidget& widget)
{
    const QString sFolder = qEnvironmentVariable(PICTURES);
    if (sFolder.isEmpty())
        return;
    QApplication::processEvents();
    EXPECT_TRUE(QDir().mkpath(sFolder));
    EXPECT_TRUE(widget.grab().save(QDir(sFolder).filePath(sName + ".png")));
}

} // namespace velmora::test
