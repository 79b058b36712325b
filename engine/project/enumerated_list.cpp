#include "project/enumerated_list.h"

#include "base/text.h"
#include "project/class_names.h"
#include "project/control_list.h"
#include "project/control_slots.h"
#include "project/project_names.h"

#include <algorithm>
#include <set>

namespace velmora {

namespace {

bool isEnumerated(const CUICtrl& record)
{
    return record.uUserDataType == UINTData && record.cEnumeratedList[0] != '\0';
}

bool contains(const std::vector<std::string>& texts, std::string_view sText)
{
    return std::ranges::find(texts, sText) != texts.end();
}

bool haveCommonItem(const std::vector<std::string>& items, std::string_view sList)
{
    return std::ranges::any_of(split(sList, ','), [&](const auto& sItem) { return contains(items, sItem); });
}

} // namespace

std::string cleanedEnumeratedList(std::string_view sList)
{
    std::string sCleaned(sList);
    std::erase(sCleaned, ' ');
    sCleaned = trimmed(sCleaned);
    if (sCleaned.ends_with(','))
        sCleaned.pop_back();
    if (sCleaned.starts_with(','))
        sCleaned.erase(0, 1);
    return sCleaned;
}

std::vector<std::string> enumeratedLists(const CUIControlList& list, const CUICtrl* pExcept)
{
    std::vector<std::string> lists;
    for (const CUICtrl* pControl : controlsOf(list))
        if (pControl != pExcept && isEnumerated(*pControl) && !contains(lists, pControl->cEnumeratedList))
            lists.emplace_back(pControl->cEnumeratedList);
    return lists;
}

std::string checkListItems(const CDSPProject& project, std::string_view sList, std::string_view sVariableName,
                           const CUICtrl* pExisting)
{
    const CNameSet variables = declaredVariables(project, pExisting);
    std::set<std::string_view> seen;
    const auto items = split(sList, ',');
    for (const std::string& sItem : items) {
        if (sItem.empty())
            return "An item of the enumerated list is empty; please remove the comma beside it.";
        const std::string sQuoted = "\"" + sItem + "\"";
        if (!isVariableName(sItem))
            return sQuoted + " can not be an item of an enumerated list. Items are names in the code: "
                             "letters, numbers and "
                             "the underscore symbol, not beginning with a number. Combo boxes show an "
                             "underscore as a space.";
        if (!seen.insert(sItem).second)
            return "The item " + sQuoted + " stands more than once in the enumerated list.";
        if (sItem == sVariableName || variables.contains(sItem) || isReservedName(project, sItem))
            return sQuoted + " can not be an item of an enumerated list: the name is already in use in the "
                             "plug-in's class. Please choose another one.";
    }
    return {};
}

std::vector<std::string> listsAlteredBy(const CDSPProject& project, std::string_view sList,
                                        const CUICtrl* pExisting)
{
    const bool bWasEnumerated = pExisting && isEnumerated(*pExisting);
    if (bWasEnumerated && sList == pExisting->cEnumeratedList)
        return {};
    const auto items = split(sList, ',');
    auto lists = enumeratedLists(project.m_UIControlList, pExisting);
    std::erase_if(lists, [&](const std::string& sOther) {
        const bool bWasShared = bWasEnumerated && sOther == pExisting->cEnumeratedList;
        return sOther == sList || (!bWasShared && !haveCommonItem(items, sOther));
    });
    return lists;
}

std::size_t maximumItems(const CUIControlList& list, const std::vector<std::string>& lists)
{
    std::size_t uMaximum = controlSlots()[0].m_uMaxItems;
    for (const CUICtrl* pControl : controlsOf(list)) {
        const CControlSlots* pSlots = findControlSlots(pControl->uControlId);
        if (pSlots && isEnumerated(*pControl) && contains(lists, pControl->cEnumeratedList))
            uMaximum = std::min(uMaximum, pSlots->m_uMaxItems);
    }
    return uMaximum;
}

void setEnumeratedList(CUICtrl& record, std::string_view sList)
{
    CUICtrl changed = record;
    const std::string sText(sList);
    changed.cEnumeratedList = sText.c_str();
    changed.fUserDisplayDataLoLimit = 0.0F;
    changed.fUserDisplayDataHiLimit = static_cast<float>(std::ranges::count(sList, ','));
    changed.fInitUserUINTValue =
        static_cast<float>(limitValue(changed.fInitUserUINTValue, 0.0, changed.fUserDisplayDataHiLimit));
    record = changed;
}

void alterEnumeratedLists(CUIControlList& list, const std::vector<std::string>& altered,
                          std::string_view sNewList)
{
    for (CUICtrl* pControl : controlsOf(list))
        if (isEnumerated(*pControl) && contains(altered, pControl->cEnumeratedList))
            setEnumeratedList(*pControl, sNewList);
}

} // namespace velmora
