#pragma once

#include "dsp/modules/module_parameter.h"

#include <string>
#include <vector>

namespace velmora {

// The coefficients of a filter as rows of text, "Coefficient" and "Value", which follow the live values. The
// filter must outlive the table or be taken out of it. [main]
class CBlockDiagramTable
{
  public:
    struct CRow
    {
        std::string m_sLabel;
        std::string m_sValue; // with six decimals
    };

    // From now on the table is about these; its rows stay until it is opened or refreshed.
    void setCoefficients(std::vector<CModuleCoefficient> coefficients);

    // Makes all rows anew.
    void open();

    // Writes the values anew, when a control of the filter has moved. Without rows they are made; if there
    // are more or fewer rows than coefficients, all stay as they are.
    void refresh();

    [[nodiscard]] const std::vector<CRow>& rows() const { return m_rows; }

  private:
    std::vector<CModuleCoefficient> m_coefficients;
    std::vector<CRow> m_rows;
};

} // namespace velmora
