#include "base/text.h"
#include "project/class_names.h"
#include "project/project_names.h"
#include "support/test_support.h"

#include <algorithm>
#include <cctype>
#include <gmock/gmock.h>
#include <sstream>

namespace velmora {
namespace {

// A header without comments and directives; the names of its macros go into the set.
std::string codeOf(const std::string& sText, std::set<std::string>& names)
{
    std::string sCode, sLine;
    bool bDirective = false;
    for (std::istringstream lines(sText); std::getline(lines, sLine);) {
        sLine.erase(std::min(sLine.find("//"), sLine.size()));
        const bool bContinues = bDirective;
        bDirective = sLine.starts_with('#') || bContinues;
        std::string sWord, sName;
        if (std::istringstream words(sLine); !bContinues && words >> sWord >> sName && sWord == "#define")
            names.insert(sName.substr(0, sName.find('(')));
        if (!bDirective)
            sCode += sLine + '\n';
        bDirective = bDirective && sLine.ends_with('\\');
    }
    return sCode;
}

// Words, numbers, "::" and other single characters.
std::vector<std::string> tokensOf(std::string_view sCode)
{
    const auto inWord = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
    std::vector<std::string> tokens;
    while (!(sCode = trimmed(sCode)).empty()) {
        const auto end = std::ranges::find_if_not(sCode, inWord);
        const auto uWord = static_cast<std::size_t>(end - sCode.begin());
        const std::size_t uLength = sCode.starts_with("::") ? 2 : std::max<std::size_t>(uWord, 1);
        tokens.emplace_back(sCode.substr(0, uLength));
        sCode.remove_prefix(uLength);
    }
    return tokens;
}

// What a header declares at file level and in the class CPlugIn.
std::set<std::string> declaredIn(const std::string& sText)
{
    enum EScope
    {
        names,
        enumerators,
        other
    };
    std::set<std::string> declared;
    const auto tokens = tokensOf(codeOf(sText, declared));
    std::vector<EScope> scopes = {names};
    std::vector<std::string> head; // of the declaration so far
    const auto headHas = [&](const char* pWord) { return std::ranges::find(head, pWord) != head.end(); };
    int nParentheses = 0;
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        const std::string& sToken = tokens[i];
        const std::string sBefore = head.empty() ? "" : head.back();
        const bool bDeclared = std::string_view("(;[={,:}").find(tokens[i + 1]) != std::string_view::npos &&
                               nParentheses == 0 && sBefore != "::" && scopes.back() != other;
        const bool bFunctionType = headHas("typedef") && sBefore == "*" && tokens[i - 2] == "(";
        if (isVariableName(sToken) && (bDeclared || bFunctionType))
            declared.insert(sToken);

        nParentheses += sToken == "(" ? 1 : sToken == ")" ? -1 : 0;
        if (sToken == "{") {
            const bool bPlugIn = head == std::vector<std::string>{"class", "CPlugIn"};
            const bool bEnum = scopes.back() == names && headHas("enum");
            scopes.push_back(bPlugIn ? names : bEnum ? enumerators : other);
        } else if (sToken == "}") {
            scopes.pop_back();
        }
        if (sToken == ";" || sToken == "{" || sToken == "}" || (sToken == ":" && !headHas("class")))
            head.clear();
        else
            head.push_back(sToken);
    }
    return declared;
}

TEST(ClassNames, TableHoldsWhatTheContractDeclares)
{
    std::set<std::string> declared = {"createObject", "getAPIVersion"}; // declared by a macro
    for (const char* pHeader : {"plugin.h", "pluginconstants.h"})
        declared.merge(declaredIn(test::readFile(std::filesystem::path(BASE_CLASS_FILES) / pHeader)));
    CNameSet missing(declared.begin(), declared.end()), stale;
    for (const std::string_view sName : contractNames())
        if (missing.erase(std::string(sName)) == 0)
            stale.emplace(sName);
    EXPECT_THAT(missing, testing::IsEmpty());
    EXPECT_THAT(stale, testing::IsEmpty());
}

TEST(ClassNames, AreTaken)
{
    CDSPProject project;
    project.m_sProjectName = "Echo";
    CUICtrl slider, combo, meter, unbound;
    slider.cVariableName = "m_fGain";
    combo.cVariableName = "m_uKind";
    combo.uUserDataType = UINTData;
    combo.cEnumeratedList = "LOW,HIGH";
    meter.uControlType = FILTER_CONTROL_LED_METER;
    meter.cVariableName = "m_fMyVariable";
    meter.cMeterVariableName = "m_fMeter";
    unbound.cVariableName = "m_fUnbound";
    unbound.uControlTheme[CONTROL_THEME_BINDING] = 1;
    for (const CUICtrl& control : {slider, combo, meter, unbound})
        project.m_UIControlList.append(control);

    for (const auto* pName : {"ui0", "ui1123", "pJSProg", "pPreset15", "CEcho", "NULL", "M_PI", "intData",
                              "init", "__x", "_X", "m_fGain", "m_uKind", "LOW", "HIGH", "m_fMeter", "unix"})
        EXPECT_TRUE(isTakenInClass(project, pName)) << pName;
    for (const auto* pName :
         {"ui", "uiGain", "ui0x", "pPreset", "Echo", "m_fMyVariable", "m_fUnbound", "_x", "Low"})
        EXPECT_FALSE(isTakenInClass(project, pName)) << pName;
    const CUICtrl* pCombo = project.m_UIControlList.getAt(1);
    EXPECT_FALSE(isTakenInClass(project, "m_uKind", pCombo));
    EXPECT_FALSE(isTakenInClass(project, "LOW", pCombo));
}

} // namespace
} // namespace velmora
