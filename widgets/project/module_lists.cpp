#include "widgets/project/module_lists.h"

#include "base/user_dialogs.h"
#include "project/codegen/new_project_request.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/project/request_fields.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>

namespace velmora {

namespace {

template <typename TOne>
void addOnce(std::vector<TOne>& list, const TOne& one)
{
    if (std::ranges::find(list, one) == list.end())
        list.push_back(one);
}

int sizeOf(const auto& list)
{
    return static_cast<int>(list.size());
}

} // namespace

CModuleLists::CModuleLists(CNewProjectRequest& request, bool bEdit, const CProjectEnvironment& environment,
                           IUserDialogs& dialogs, QWidget* pParent)
    : QWidget(pParent), m_request(request), m_dialogs(dialogs),
      m_nFixedModules(bEdit ? sizeOf(request.m_modules) : 0),
      m_nFixedStock(bEdit ? sizeOf(request.m_stockObjects) : 0)
{
    auto* pColumns = new QHBoxLayout(this);
    pColumns->setContentsMargins(0, 0, 0, 0);
    pColumns->setSpacing(CTheme::MARGIN);
    QPushButton* pAddModule = addColumn(m_pModules, tr("&Existing Plug-Ins"), tr("&Add Module"));
    m_pAddStock = addColumn(m_pStock, tr("Stoc&k Objects"), tr("A&dd Stock Object"));
    m_pRemove = addColumn(m_pChosen, tr("&Included"), tr("Remo&ve"));
    connect(pAddModule, &QPushButton::clicked, this, &CModuleLists::addModule);
    connect(m_pModules, &QListWidget::itemDoubleClicked, this, &CModuleLists::addModule);
    connect(m_pAddStock, &QPushButton::clicked, this, &CModuleLists::addStockObject);
    connect(m_pStock, &QListWidget::itemDoubleClicked, this, &CModuleLists::addStockObject);
    connect(m_pRemove, &QPushButton::clicked, this, &CModuleLists::removeChosen);
    connect(m_pChosen, &QListWidget::currentRowChanged, this,
            [this](int nRow) { m_pRemove->setEnabled(nRow >= 0); });
    fill(environment, bEdit);
    showChosen();
}

QPushButton* CModuleLists::addColumn(QListWidget*& pList, const QString& sTitle, const QString& sButton)
{
    pList = new QListWidget;
    pList->setAccessibleName(CRequestFields::spoken(sTitle));
    pList->setTextElideMode(Qt::ElideRight);
    pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pList->setMinimumHeight(pList->fontMetrics().lineSpacing() * 6);
    auto* pLabel = new QLabel(sTitle);
    pLabel->setBuddy(pList);
    auto* pButton = new QPushButton(sButton);
    pButton->setAutoDefault(false);
    auto* pColumn = new QVBoxLayout;
    pColumn->setSpacing(CTheme::SPACING / 2);
    pColumn->addWidget(pLabel);
    pColumn->addWidget(pList, 1);
    pColumn->addWidget(pButton);
    static_cast<QHBoxLayout*>(layout())->addLayout(pColumn, 1);
    return pButton;
}

void CModuleLists::fill(const CProjectEnvironment& environment, bool bEdit)
{
    m_files = existingPlugIns(environment);
    if (bEdit) // a project is no part of itself
        std::erase_if(m_files, [this](const auto& file) { return file.parent_path() == m_request.folder(); });
    for (const auto& file : m_files) {
        auto* pItem = new QListWidgetItem(pathText(file.parent_path().filename()), m_pModules);
        pItem->setToolTip(pathText(file));
    }
    for (const std::string& sName : stockObjectNames(environment))
        m_pStock->addItem(qs(sName));
}

void CModuleLists::enableStockObjects(bool bEnable)
{
    m_pStock->setEnabled(bEnable);
    m_pAddStock->setEnabled(bEnable);
}

void CModuleLists::addModule()
{
    const int nRow = m_pModules->currentRow();
    if (nRow < 0)
        return m_dialogs.showMessage("Pick a module first");
    addOnce(m_request.m_modules, m_files[static_cast<std::size_t>(nRow)]);
    showChosen();
}

void CModuleLists::addStockObject()
{
    const QListWidgetItem* pItem = m_pStock->currentItem();
    if (!pItem)
        return m_dialogs.showMessage("Pick a Stock Object first");
    addOnce(m_request.m_stockObjects, utf8(pItem->text()));
    showChosen();
}

void CModuleLists::removeChosen()
{
    const int nRow = m_pChosen->currentRow();
    const int nStock = nRow - sizeOf(m_request.m_modules);
    if (nRow < 0)
        return;
    if (nStock < 0 && nRow >= m_nFixedModules)
        m_request.m_modules.erase(m_request.m_modules.begin() + nRow);
    else if (nStock >= m_nFixedStock)
        m_request.m_stockObjects.erase(m_request.m_stockObjects.begin() + nStock);
    else
        return m_dialogs.showMessage(
            "This is part of the project already. Its code may depend on it, so it "
            "is not taken out here; remove it in the code if you no longer need it.");
    showChosen();
}

void CModuleLists::showChosen()
{
    m_pChosen->clear();
    for (const auto& file : m_request.m_modules)
        m_pChosen->addItem(pathText(file.parent_path().filename()));
    for (const std::string& sName : m_request.m_stockObjects)
        m_pChosen->addItem(qs(sName) + tr(" (Stock Object)"));
    for (int i = 0; i < m_pChosen->count(); i++)
        m_pChosen->item(i)->setToolTip(m_pChosen->item(i)->text());
    m_pRemove->setEnabled(false);
}

} // namespace velmora
