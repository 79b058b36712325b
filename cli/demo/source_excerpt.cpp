#include "cli/demo/source_excerpt.h"

#include "cli/demo/markup.h"

#include <algorithm>

namespace velmora::cli {

namespace {

constexpr std::string_view PROCESSING_OPERATIONS[] = {"processAudioFrame", "processSocketAudioBuffer",
                                                      "processChannelBuffers"};

// The length of the body from its opening brace to the closing one; 0 if it is not closed.
std::size_t bodyLength(std::string_view sSource)
{
    int nDepth = 0;
    for (std::size_t uIndex = 0; uIndex < sSource.size();) {
        const std::size_t uLength = sourceTokenLength(sSource.substr(uIndex));
        if (uLength == 1 && sSource[uIndex] == '{')
            ++nDepth;
        uIndex += uLength;
        if (uLength == 1 && sSource[uIndex - 1] == '}' && --nDepth == 0)
            return uIndex;
    }
    return 0;
}

} // namespace

std::string operationIn(std::string_view sSource, std::string_view sOperation)
{
    const std::size_t uName = sSource.find("::" + std::string(sOperation) + "(");
    if (uName == std::string_view::npos)
        return {};
    const std::size_t uLineEnd = sSource.rfind('\n', uName);
    const std::size_t uBegin = uLineEnd == std::string_view::npos ? 0 : uLineEnd + 1;
    const std::size_t uBody = sSource.find('{', uName);
    const std::size_t uLength = uBody == std::string_view::npos ? 0 : bodyLength(sSource.substr(uBody));
    return uLength ? std::string(sSource.substr(uBegin, uBody + uLength - uBegin)) + "\n" : std::string();
}

std::string processingOperationIn(std::string_view sSource)
{
    for (const std::string_view sOperation : PROCESSING_OPERATIONS)
        if (std::string sFound = operationIn(sSource, sOperation); !sFound.empty())
            return sFound;
    return {};
}

} // namespace velmora::cli
