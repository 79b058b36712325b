#include "project/compiler/build_record.h"

#include "base/text.h"

namespace velmora {

namespace {

constexpr std::string_view FIRST_LINE = "velmora build record 1";
constexpr std::string_view LAST_LINE = "end";

// Takes the text up to the next blank.
std::string_view takeWord(std::string_view& sText)
{
    const std::string_view sWord = sText.substr(0, std::min(sText.find(' '), sText.size()));
    sText.remove_prefix(std::min(sWord.size() + 1, sText.size()));
    return sWord;
}

// "file HASH-OR-DASH STAMP-OR-DASH PATH"
CReadFile readFileLine(std::string_view sLine)
{
    CReadFile file;
    file.m_contentHash = hashFromText(takeWord(sLine));
    file.m_stamp = CFileStamp::fromText(takeWord(sLine));
    file.m_file = sLine;
    return file;
}

} // namespace

CBuildRecord CBuildRecord::load(const std::filesystem::path& file)
{
    const auto lines = split(contentsOfFile(file).value_or(""), '\n');
    CBuildRecord record;
    CObjectRecord* pObject = nullptr;
    if (lines.size() < 3 || lines.front() != FIRST_LINE || lines[lines.size() - 2] != LAST_LINE)
        return {};
    for (std::size_t uLine = 1; uLine + 2 < lines.size(); ++uLine) {
        std::string_view sRest = lines[uLine];
        const std::string_view sKind = takeWord(sRest);
        if (sKind == "file" && pObject) {
            pObject->m_files.push_back(readFileLine(sRest));
            continue;
        }
        const auto hash = hashFromText(takeWord(sRest));
        const auto stamp = CFileStamp::fromText(takeWord(sRest));
        if (!hash || !stamp)
            return {};
        if (sKind == "object") {
            pObject = &record.m_objects[std::string(sRest)];
            pObject->m_uCommandHash = *hash;
            pObject->m_object = *stamp;
        } else if (sKind == "library") {
            record.m_uLinkHash = *hash;
            record.m_library = stamp;
        } else {
            return {};
        }
    }
    return record;
}

std::string CBuildRecord::text() const
{
    std::string sText = std::string(FIRST_LINE) + "\n";
    for (const auto& [sSource, object] : m_objects) {
        sText +=
            "object " + hashText(object.m_uCommandHash) + " " + object.m_object.text() + " " + sSource + "\n";
        for (const CReadFile& file : object.m_files)
            sText += "file " + (file.m_contentHash ? hashText(*file.m_contentHash) : "-") + " " +
                     (file.m_stamp ? file.m_stamp->text() : "-") + " " + file.m_file.string() + "\n";
    }
    if (m_library)
        sText += "library " + hashText(m_uLinkHash) + " " + m_library->text() + " \n";
    return sText + std::string(LAST_LINE) + "\n";
}

std::vector<std::filesystem::path> filesOfMakeRule(std::string_view sRule)
{
    std::vector<std::filesystem::path> result;
    std::string sName;
    bool bTarget = true;
    const auto endName = [&] {
        if (!sName.empty() && !bTarget)
            result.emplace_back(sName);
        bTarget = bTarget && !sName.ends_with(':');
        sName.clear();
    };
    for (std::size_t uByte = 0; uByte < sRule.size(); ++uByte) {
        const char cByte = sRule[uByte];
        const char cNext = uByte + 1 < sRule.size() ? sRule[uByte + 1] : '\0';
        const bool bEscaped =
            (cByte == '\\' && (cNext == ' ' || cNext == '#')) || (cByte == '$' && cNext == '$');
        if (bEscaped) {
            sName += cNext;
            ++uByte;
        } else if (cByte == ' ' || cByte == '\n' || (cByte == '\\' && cNext == '\n')) {
            endName();
        } else {
            sName += cByte;
        }
    }
    endName();
    return result;
}

} // namespace velmora
