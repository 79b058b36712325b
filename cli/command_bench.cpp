#include "cli/command_bench.h"

#include "base/text.h"
#include "cli/bench/bench_parts.h"
#include "cli/command_context.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace velmora::cli {

namespace {

// A folder for the benchmark's files, removed with all that it holds.
class CWorkFolder
{
  public:
    CWorkFolder()
    {
        std::string sPath = (std::filesystem::temp_directory_path() / "velmora-bench-XXXXXX").string();
        if (!::mkdtemp(sPath.data()))
            throw std::runtime_error("The folder " + sPath + " cannot be made: " + std::strerror(errno) +
                                     ".");
        m_path = sPath;
    }
    ~CWorkFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    CWorkFolder(const CWorkFolder&) = delete;
    CWorkFolder& operator=(const CWorkFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

std::string asJson(const std::vector<CBenchFigure>& figures)
{
    CJsonWriter json;
    json.beginObject();
    json.key("figures");
    json.beginArray();
    for (const CBenchFigure& figure : figures) {
        json.beginObject();
        json.member("name", figure.m_sName);
        json.member("value", figure.m_dValue);
        json.member("unit", figure.m_sUnit);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.text();
}

std::string asText(const std::vector<CBenchFigure>& figures)
{
    CTextTable table({"Figure", ">Value", "Unit"});
    for (const CBenchFigure& figure : figures)
        table.addRow({figure.m_sName, formatted("%.4g", figure.m_dValue), figure.m_sUnit});
    return table.text();
}

} // namespace

int runBench(CCommandContext& context)
{
    std::vector<CBenchFigure> figures;
    CBenchSteps steps(context.progress(), BENCH_STEPS);
    const auto append = [&](std::vector<CBenchFigure> part) {
        std::ranges::move(part, std::back_inserter(figures));
    };
    try {
        if (!steps.report(0.0))
            throw CBenchInterrupted();
        const CWorkFolder folder;
        append(benchOffline(folder.path(), steps));
        append(benchCallback(steps));
        append(benchDsp(steps));
        try {
            append(benchLibraries(folder.path(), steps));
        } catch (const std::runtime_error& fault) {
            context.dialogs().showMessage(std::string("Without figures for libraries: ") + fault.what());
        }
    } catch (const CBenchInterrupted&) {
        return context.fail("The benchmark was interrupted.");
    } catch (const std::runtime_error& fault) {
        return context.fail(fault.what());
    }
    context.m_sResult = context.json() ? asJson(figures) : asText(figures);
    return EXIT_DONE;
}

} // namespace velmora::cli
