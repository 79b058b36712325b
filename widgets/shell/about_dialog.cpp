#include "widgets/shell/about_dialog.h"

#include "project/codegen/product_version.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>
#include <array>

namespace velmora {

namespace {

struct CComponent
{
    const char* m_pName;
    const char* m_pUse;
    const char* m_pLicence;
};

constexpr std::array COMPONENTS{
    CComponent{"Qt", "windows", "GNU LGPL, version 3"},
    CComponent{"PortAudio", "sound cards", "PortAudio licence (MIT)"},
    CComponent{"libsndfile", "audio files", "GNU LGPL, version 2.1 or later"},
    CComponent{"RtMidi", "MIDI devices", "RtMidi licence (MIT)"},
};

QLabel* makeLabel(const QString& sText, const QFont& font, QWidget* pParent)
{
    auto* pLabel = new QLabel(sText, pParent);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setFont(font);
    return pLabel;
}

QGridLayout* makeComponents(QWidget* pParent)
{
    auto* pGrid = new QGridLayout;
    pGrid->setHorizontalSpacing(2 * CTheme::SPACING);
    pGrid->setVerticalSpacing(CTheme::SPACING / 2);
    int nRow = 0;
    for (const CComponent& component : COMPONENTS) {
        int nColumn = 0;
        for (const char* pText : {component.m_pName, component.m_pUse, component.m_pLicence}) {
            pGrid->addWidget(makeLabel(QLatin1String(pText), CTheme::font(1.0, nColumn == 0), pParent), nRow,
                             nColumn);
            ++nColumn;
        }
        ++nRow;
    }
    pGrid->setColumnStretch(2, 1);
    return pGrid;
}

} // namespace

QString CAboutDialog::versionText()
{
    return QStringLiteral("Velmora %1\nQt %2 (built with %3)\n%4, %5")
        .arg(qs(productVersion()), QLatin1String(qVersion()), QStringLiteral(QT_VERSION_STR),
             QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture());
}

CAboutDialog::CAboutDialog(QWidget* pParent) : QDialog(pParent)
{
    setWindowTitle(tr("About Velmora(tm)"));
    auto* pVersions = makeLabel(versionText().section(QLatin1Char('\n'), 1), CTheme::font(), this);
    pVersions->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    pVersions->setAccessibleName(tr("Versions"));
    auto* pWhat = makeLabel(tr("A laboratory for audio processing: write a plug-in, build it, "
                               "and hear it while its controls move."),
                            CTheme::font(), this);
    pWhat->setWordWrap(true);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* pCopy = pButtons->addButton(tr("&Copy Versions"), QDialogButtonBox::ActionRole);
    pCopy->setAutoDefault(false);
    pButtons->button(QDialogButtonBox::Close)->setDefault(true);
    pButtons->button(QDialogButtonBox::Close)->setFocus();
    connect(pCopy, &QPushButton::clicked, this, [] { QGuiApplication::clipboard()->setText(versionText()); });
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(2 * CTheme::MARGIN, 2 * CTheme::MARGIN, 2 * CTheme::MARGIN, CTheme::MARGIN);
    pLayout->setSpacing(CTheme::SPACING);
    pLayout->addWidget(makeLabel(QStringLiteral("Velmora(tm)"), CTheme::font(2.0, true), this));
    pLayout->addWidget(makeLabel(tr("Version %1").arg(qs(productVersion())), CTheme::font(1.15), this));
    pLayout->addWidget(pWhat);
    pLayout->addWidget(pVersions);
    pLayout->addSpacing(CTheme::SPACING);
    pLayout->addWidget(makeLabel(tr("Built on"), CTheme::font(1.0, true), this));
    pLayout->addLayout(makeComponents(this));
    pLayout->addSpacing(CTheme::SPACING);
    pLayout->addWidget(pButtons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 68);
}

} // namespace velmora
