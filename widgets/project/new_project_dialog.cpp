#include "widgets/project/new_project_dialog.h"

#include "base/user_dialogs.h"
#include "project/project_names.h"
#include "widgets/common/path_field.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velmora {

namespace {

constexpr const char* SOLUTION_FILTER = "VC++ Solution Files (*.sln)|*.sln||";
constexpr int CODE_LENGTH = 4; // of the companies' and plug-ins' codes

QListWidget* makeList(const char* pName)
{
    auto* pList = new QListWidget;
    pList->setAccessibleName(pName);
    pList->setMinimumHeight(90);
    return pList;
}

QVBoxLayout* column(const char* pTitle, QWidget* pList, QWidget* pButton)
{
    auto* pColumn = new QVBoxLayout;
    auto* pLabel = new QLabel(pTitle);
    pLabel->setBuddy(pList);
    pColumn->addWidget(pLabel);
    pColumn->addWidget(pList);
    pColumn->addWidget(pButton);
    return pColumn;
}

} // namespace

CNewProjectDialog::CNewProjectDialog(CNewProjectRequest request, bool bEdit, CProjectEnvironment environment,
                                     IUserDialogs& dialogs, QWidget* pParent)
    : QDialog(pParent), m_request(std::move(request)), m_bEdit(bEdit), m_environment(std::move(environment)),
      m_dialogs(dialogs), m_nFixedModules(bEdit ? static_cast<int>(m_request.m_modules.size()) : 0),
      m_nFixedStock(bEdit ? static_cast<int>(m_request.m_stockObjects.size()) : 0)
{
    setWindowTitle("Edit Project Properties");
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pLayout->addWidget(buildNames());
    auto* pTabs = new QTabWidget;
    pTabs->addTab(buildKind(), "&Plug-In");
    pTabs->addTab(buildModules(), "&Modules");
    pTabs->addTab(buildExport(), "E&xport");
    pTabs->addTab(buildSolution(), "&Solution");
    pLayout->addWidget(pTabs);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &CNewProjectDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &CNewProjectDialog::reject);
    pLayout->addWidget(pButtons);
    showNames();
    showValidation();
    showChosen();
    resize(620, 560);
    (bEdit ? static_cast<QWidget*>(pTabs) : m_pName)->setFocus();
}

QLineEdit* CNewProjectDialog::addText(QFormLayout& layout, const QString& sLabel,
                                      std::string CNewProjectRequest::*pText)
{
    auto* pEdit = new QLineEdit(qs(m_request.*pText));
    pEdit->setAccessibleName(sLabel);
    layout.addRow(sLabel, pEdit);
    connect(pEdit, &QLineEdit::textEdited, this, [this, pText](const QString& sText) {
        m_request.*pText = utf8(sText);
        showValidation();
    });
    return pEdit;
}

// A check box whose files are missing is unticked again, when that has been told.
QCheckBox* CNewProjectDialog::addFlag(QVBoxLayout& layout, const QString& sText, flag pFlag,
                                      checkFiles pCheck)
{
    auto* pBox = new QCheckBox(sText);
    pBox->setChecked(m_request.*pFlag);
    layout.addWidget(pBox);
    connect(pBox, &QCheckBox::toggled, this, [this, pBox, pFlag, pCheck](bool bOn) {
        if (bOn && pCheck && !pCheck(m_environment, m_dialogs)) {
            pBox->setChecked(false);
            return;
        }
        m_request.*pFlag = bOn;
    });
    return pBox;
}

QWidget* CNewProjectDialog::buildNames()
{
    auto* pBox = new QWidget;
    auto* pForm = new QFormLayout(pBox);
    pForm->setContentsMargins(0, 0, 0, 0);
    m_pName = new QLineEdit;
    m_pName->setAccessibleName("Project Name");
    m_pName->setReadOnly(m_bEdit);
    m_pName->setEnabled(!m_bEdit);
    pForm->addRow("Project &Name:", m_pName);
    m_pNameError = new QLabel;
    m_pNameError->setWordWrap(true);
    pForm->addRow(QString(), m_pNameError);
    m_pHeader = addText(*pForm, ".&h File:", &CNewProjectRequest::m_sHeaderFile);
    m_pSource = addText(*pForm, ".&cpp File:", &CNewProjectRequest::m_sSourceFile);
    m_pHeader->setEnabled(!m_bEdit);
    m_pSource->setEnabled(!m_bEdit);
    m_pFolder = new CPathField(m_dialogs);
    m_pFolder->useFolder("Browse for the DSP Project Folder");
    m_pFolder->setName("Project folder");
    m_pFolder->setText(pathText(m_request.m_parentFolder));
    m_pFolder->setEnabled(!m_bEdit);
    pForm->addRow("Project &Folder:", m_pFolder);
    addText(*pForm, "Company &Name:", &CNewProjectRequest::m_sCompanyName);
    connect(m_pName, &QLineEdit::textEdited, this, &CNewProjectDialog::nameTyped);
    connect(m_pFolder, &CPathField::edited, this,
            [this](const QString& sPath) { m_request.m_parentFolder = pathOf(sPath); });
    return pBox;
}

QWidget* CNewProjectDialog::buildKind()
{
    auto* pPage = new QWidget;
    auto* pLayout = new QVBoxLayout(pPage);
    addFlag(*pLayout, "Output Only Synthesizer Plug-In", &CNewProjectRequest::m_bOutputOnlyPlugIn);
    addFlag(*pLayout, "Use Velmora Custom GUI ", &CNewProjectRequest::m_bUseCustomVSTGUI);
    addFlag(*pLayout, "I will write my own GUI", &CNewProjectRequest::m_bUserCustomGUI);
    addFlag(*pLayout, "Include CFFT Object (advanced)", &CNewProjectRequest::m_bIncludeFFT);
    auto* pForm = new QFormLayout;
    addText(*pForm, "&Latency (samples):", &CNewProjectRequest::m_sLatency);
    pLayout->addLayout(pForm);
    pLayout->addStretch();
    return pPage;
}

QWidget* CNewProjectDialog::buildExport()
{
    auto* pPage = new QWidget;
    auto* pLayout = new QVBoxLayout(pPage);
    addFlag(*pLayout, "Make VST2 and VST3 Compatible", &CNewProjectRequest::m_bVSTCompatible, &checkVSTFiles);
    addFlag(*pLayout, "Enable Sidechain Input for VST and AU", &CNewProjectRequest::m_bSidechainEnabled);
    QCheckBox* pAU = addFlag(*pLayout, "Write Audio Units (AU) XCode Wrappers",
                             &CNewProjectRequest::m_bWriteAUWrapper, &checkAUTemplates);
    QCheckBox* pCarbon =
        addFlag(*pLayout, "Add Carbon GUI (I will write it)", &CNewProjectRequest::m_bCarbonGUI);
    QCheckBox* pCocoa =
        addFlag(*pLayout, "Add Cocoa GUI (you will connect it)", &CNewProjectRequest::m_bCocoaGUI);
    for (QCheckBox* pBox : {pCarbon, pCocoa}) {
        pBox->setEnabled(pAU->isChecked());
        connect(pAU, &QCheckBox::toggled, pBox, &QCheckBox::setEnabled);
    }
    auto* pForm = new QFormLayout;
    const struct
    {
        const char* m_pLabel;
        std::string CNewProjectRequest::*m_pText;
    } codes[] = {
        {"AU &Company Code:", &CNewProjectRequest::m_sCompanyCode},
        {"AU &Plug-In Code:", &CNewProjectRequest::m_sPlugInCode},
        {"&VST Plug-In Code:", &CNewProjectRequest::m_sVSTPlugInCode},
    };
    for (const auto& code : codes)
        addText(*pForm, code.m_pLabel, code.m_pText)->setMaxLength(CODE_LENGTH);
    for (QLineEdit** ppLine : {&m_pEffectLine, &m_pInstrumentLine}) {
        *ppLine = new QLineEdit;
        (*ppLine)->setReadOnly(true);
        (*ppLine)->setAccessibleName("Validation line");
        pForm->addRow(ppLine == &m_pEffectLine ? "Validation, effect:" : "Validation, instrument:", *ppLine);
    }
    pLayout->addLayout(pForm);
    pLayout->addStretch();
    return pPage;
}

QWidget* CNewProjectDialog::buildSolution()
{
    auto* pPage = new QWidget;
    auto* pLayout = new QVBoxLayout(pPage);
    auto* pNew = new QRadioButton("Create New Solution");
    auto* pOld = new QRadioButton("Add to Existing Solution:");
    pNew->setChecked(m_request.m_bCreateNewSolution);
    pOld->setChecked(!m_request.m_bCreateNewSolution);
    m_pSolution = new CPathField(m_dialogs);
    m_pSolution->useFile(SOLUTION_FILTER);
    m_pSolution->setName("Existing solution");
    m_pSolution->setText(pathText(m_request.m_existingSolution));
    m_pSolution->setEnabled(!m_request.m_bCreateNewSolution);
    connect(pNew, &QRadioButton::toggled, this, [this](bool bNew) {
        m_request.m_bCreateNewSolution = bNew;
        m_pSolution->setEnabled(!bNew);
    });
    connect(m_pSolution, &CPathField::edited, this, &CNewProjectDialog::chooseSolution);
    pLayout->addWidget(pNew);
    pLayout->addWidget(pOld);
    pLayout->addWidget(m_pSolution);
    pLayout->addStretch();
    pPage->setEnabled(!m_bEdit);
    return pPage;
}

QWidget* CNewProjectDialog::buildModules()
{
    auto* pPage = new QWidget;
    auto* pLayout = new QVBoxLayout(pPage);
    m_pModules = makeList("Existing Plug-Ins");
    for (const auto& file : existingPlugIns(m_environment))
        m_pModules->addItem(pathText(file.parent_path().filename()));
    m_pStock = makeList("Stock Objects");
    for (const std::string& sName : stockObjectNames(m_environment))
        m_pStock->addItem(qs(sName));
    m_pChosen = makeList("Chosen modules");
    auto* pAddModule = new QPushButton("&Add Module");
    auto* pAddStock = new QPushButton("Add S&tock Object");
    auto* pRemove = new QPushButton("&Remove");
    connect(pAddModule, &QPushButton::clicked, this, &CNewProjectDialog::addModule);
    connect(pAddStock, &QPushButton::clicked, this, &CNewProjectDialog::addStockObject);
    connect(pRemove, &QPushButton::clicked, this, &CNewProjectDialog::removeChosen);
    QCheckBox* pReverb = addFlag(*pLayout, "Include Velmora Reverb Objects (advanced)",
                                 &CNewProjectRequest::m_bIncludeReverbObjects);
    for (QWidget* pStockPart : {static_cast<QWidget*>(m_pStock), static_cast<QWidget*>(pAddStock)}) {
        pStockPart->setEnabled(pReverb->isChecked());
        connect(pReverb, &QCheckBox::toggled, pStockPart, &QWidget::setEnabled);
    }
    auto* pColumns = new QHBoxLayout;
    pColumns->addLayout(column("Existing Plug-Ins", m_pModules, pAddModule));
    pColumns->addLayout(column("Stock Objects", m_pStock, pAddStock));
    pColumns->addLayout(column("Included", m_pChosen, pRemove));
    pLayout->addLayout(pColumns);
    return pPage;
}

void CNewProjectDialog::nameTyped(const QString& sName)
{
    m_request.setName(utf8(sName));
    showNames();
}

// What OK would refuse about the name stands below it while it is typed.
void CNewProjectDialog::showNames()
{
    if (m_pName->text() != qs(m_request.m_sProjectName))
        m_pName->setText(qs(m_request.m_sProjectName));
    m_pHeader->setText(qs(m_request.m_sHeaderFile));
    m_pSource->setText(qs(m_request.m_sSourceFile));
    const bool bInvalid =
        !m_bEdit && !m_request.m_sProjectName.empty() && !isProjectNameValid(m_request.m_sProjectName);
    const QString sSuggestion = qs(cleanedProjectName(m_request.m_sProjectName));
    m_pNameError->setText(bInvalid ? "Letters only: the name becomes a C++ class. Suggested: " + sSuggestion
                                   : QString());
    m_pNameError->setVisible(bInvalid);
    QPalette palette = m_pNameError->palette();
    palette.setColor(QPalette::WindowText, CTheme::instance().colours().m_error);
    m_pNameError->setPalette(palette);
    m_pName->setAccessibleDescription(m_pNameError->text());
}

void CNewProjectDialog::showValidation()
{
    m_pEffectLine->setText(qs(auEffectValidation(m_request)));
    m_pInstrumentLine->setText(qs(auInstrumentValidation(m_request)));
}

void CNewProjectDialog::chooseSolution(const QString& sFile)
{
    m_request.m_existingSolution = pathOf(sFile);
}

void CNewProjectDialog::addModule()
{
    const int nRow = m_pModules->currentRow();
    if (nRow < 0)
        return m_dialogs.showMessage("Pick a module first");
    const auto files = existingPlugIns(m_environment);
    const auto& file = files.at(static_cast<std::size_t>(nRow));
    if (std::ranges::find(m_request.m_modules, file) == m_request.m_modules.end())
        m_request.m_modules.push_back(file);
    showChosen();
}

void CNewProjectDialog::addStockObject()
{
    const QListWidgetItem* pItem = m_pStock->currentItem();
    if (!pItem)
        return m_dialogs.showMessage("Pick a Stock Object first");
    const std::string sName = utf8(pItem->text());
    if (std::ranges::find(m_request.m_stockObjects, sName) == m_request.m_stockObjects.end())
        m_request.m_stockObjects.push_back(sName);
    showChosen();
}

// What an existing project has already stays in it.
void CNewProjectDialog::removeChosen()
{
    const int nRow = m_pChosen->currentRow();
    const int nModules = static_cast<int>(m_request.m_modules.size());
    if (nRow < 0)
        return;
    if (nRow < nModules && nRow >= m_nFixedModules)
        m_request.m_modules.erase(m_request.m_modules.begin() + nRow);
    else if (nRow - nModules >= m_nFixedStock)
        m_request.m_stockObjects.erase(m_request.m_stockObjects.begin() + (nRow - nModules));
    else
        m_dialogs.showMessage("The project has this already; what is in a project is not taken out of it.");
    showChosen();
}

void CNewProjectDialog::showChosen()
{
    m_pChosen->clear();
    for (const auto& file : m_request.m_modules)
        m_pChosen->addItem(pathText(file.stem()));
    for (const std::string& sName : m_request.m_stockObjects)
        m_pChosen->addItem(qs(sName) + " (Stock Object)");
}

void CNewProjectDialog::accept()
{
    if (!m_request.m_bCreateNewSolution && m_request.m_existingSolution.extension() != ".sln")
        return m_dialogs.showMessage("Not a .sln file.");
    if (!m_store || m_store(m_request))
        return QDialog::accept();
    showNames();
    m_pName->setFocus();
    m_pName->selectAll();
}

} // namespace velmora
