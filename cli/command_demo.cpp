#include "cli/command_demo.h"

#include "cli/demo/demo_tour.h"
#include "cli/json_writer.h"

namespace velmora::cli {

int runDemo(CCommandContext& context)
{
    CDemoTour tour(context, context.line().argument("DIR").value_or("velmora-demo"));
    if (!tour.run())
        return EXIT_FAILED;
    if (!context.json()) {
        context.m_sResult = tour.reportFile().string() + "\n";
        return EXIT_DONE;
    }
    CJsonWriter json;
    json.beginObject();
    json.member("report", tour.reportFile().string());
    json.endObject();
    context.m_sResult = json.text();
    return EXIT_DONE;
}

} // namespace velmora::cli
