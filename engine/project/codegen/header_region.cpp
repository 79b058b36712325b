#include "project/codegen/header_region.h"

#include "project/codegen/code_text.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <array>
#include <set>
#include <string_view>

namespace velmora {

namespace {

constexpr std::array<std::string_view, 4> TYPE_NAMES{"\tint ", "\tfloat ", "\tdouble ", "\tUINT "};

} // namespace

std::string headerRegionBody(const CDSPProject& project)
{
    std::string sBody;
    std::set<std::string> enumerations;
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList)) {
        if (pControl->uControlTheme[CONTROL_THEME_BINDING] == 1)
            continue;
        const UINT uType = pControl->uUserDataType;
        if (pControl->uControlType != FILTER_CONTROL_LED_METER && uType < TYPE_NAMES.size()) {
            sBody.append(TYPE_NAMES[uType]);
            sBody.append(variableIdentifier(*pControl));
            sBody.append(isUserVariableType(pControl->uControlType) ? ";// *** user-Variable\n" : ";\n");
            if (uType == UINTData) {
                std::string sEnumeration = "\tenum{" + enumeratorList(pControl->cEnumeratedList) + "};\n";
                if (enumerations.insert(sEnumeration).second)
                    sBody += sEnumeration;
            }
        }
        if (pControl->bUseMeter)
            sBody += "\tfloat " + meterVariableIdentifier(*pControl) + ";\n";
    }
    return sBody;
}

} // namespace velmora
