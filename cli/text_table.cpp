#include "cli/text_table.h"

#include "cli/json_writer.h"

#include <algorithm>

namespace velmora::cli {

namespace {

// How many columns a UTF-8 text takes: one for each character.
std::size_t widthOf(std::string_view sText)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(sText, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
}

std::string printable(const std::string& sText)
{
    std::string sClean = toUtf8(sText);
    std::ranges::replace_if(
        sClean, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return sClean;
}

} // namespace

CTextTable::CTextTable(const std::vector<std::string_view>& headings)
{
    for (const std::string_view sHeading : headings) {
        m_rightAligned.push_back(sHeading.starts_with('>'));
        m_headings.emplace_back(sHeading.substr(m_rightAligned.back() ? 1 : 0));
    }
}

void CTextTable::addRow(std::vector<std::string> cells)
{
    cells.resize(m_headings.size());
    for (std::string& sCell : cells)
        sCell = printable(sCell);
    m_rows.push_back(std::move(cells));
}

std::string CTextTable::text() const
{
    std::vector<std::size_t> widths;
    for (std::size_t uColumn = 0; uColumn < m_headings.size(); ++uColumn) {
        widths.push_back(widthOf(m_headings[uColumn]));
        for (const auto& row : m_rows)
            widths.back() = std::max(widths.back(), widthOf(row[uColumn]));
    }

    std::string sText;
    const auto appendRow = [&](const std::vector<std::string>& row) {
        std::string sLine;
        for (std::size_t uColumn = 0; uColumn < row.size(); ++uColumn) {
            const std::string sFiller(widths[uColumn] - widthOf(row[uColumn]), ' ');
            sLine += uColumn == 0 ? "" : "  ";
            sLine += m_rightAligned[uColumn] ? sFiller + row[uColumn] : row[uColumn] + sFiller;
        }
        sLine.erase(sLine.find_last_not_of(' ') + 1);
        sText += sLine + "\n";
    };
    appendRow(m_headings);
    for (const auto& row : m_rows)
        appendRow(row);
    return sText;
}

} // namespace velmora::cli
