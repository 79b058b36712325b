#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

// A table for people: columns aligned under their headings, two blanks between them.
class CTextTable
{
  public:
    // Headings; one that begins with '>' stands, without it, over a column aligned to the right.
    explicit CTextTable(const std::vector<std::string_view>& headings);

    // A row; missing cells are empty.
    void addRow(std::vector<std::string> cells);

    [[nodiscard]] bool empty() const { return m_rows.empty(); }

    // Headings and rows, each with a line end. Control characters in cells appear as '?'.
    [[nodiscard]] std::string text() const;

  private:
    std::vector<bool> m_rightAligned;
    std::vector<std::string> m_headings;
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace velmora::cli
