#include "project/codegen/text_surgery.h"

#include "base/patience.h"
#include "base/platform_file_read.h"
#include "base/safe_file.h"
#include "base/user_dialogs.h"

namespace velmora {

namespace {

constexpr std::string_view CANNOT_CONTINUE =
    "\n\n Can not continue with operation. Please alert Orin Halvek.";

} // namespace

bool readFileToString(const std::filesystem::path& path, std::string& sText, bool bWait, int nRetries,
                      bool bDontCreate)
{
    EFileRead eRead = readFileUnlessLocked(path, sText);
    for (int nTry = 0; eRead == EFileRead::locked && bWait && nTry < nRetries; ++nTry) {
        const std::string sFor = "Waiting for " + path.string() + ", which another program has locked.";
        if (!waitPatiently(FILE_RETRY_DELAY, sFor))
            return false;
        eRead = readFileUnlessLocked(path, sText);
    }
    if (eRead == EFileRead::missing)
        return bDontCreate || writeStringToFile(path, {});
    return eRead == EFileRead::done;
}

bool writeStringToFile(const std::filesystem::path& path, std::string_view sText)
{
    return writeFileSafely(path, sText);
}

bool fileExists(const std::filesystem::path& path)
{
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::size_t replaceAll(std::string& sText, std::string_view sFrom, std::string_view sTo)
{
    std::size_t uCount = 0;
    std::size_t uCopied = 0;
    std::string sResult;
    for (auto uFound = sFrom.empty() ? std::string::npos : sText.find(sFrom); uFound != std::string::npos;
         uFound = sText.find(sFrom, uCopied)) {
        sResult.append(sText, uCopied, uFound - uCopied).append(sTo);
        uCopied = uFound + sFrom.size();
        ++uCount;
    }
    if (uCount > 0)
        sText = std::move(sResult.append(sText, uCopied));
    return uCount;
}

bool checkCriticalString(std::ptrdiff_t nPosition, std::string_view sMarker, std::string_view sFile,
                         IUserDialogs& dialogs)
{
    if (nPosition >= 0)
        return true;
    std::string sMessage = "Failed to find critical string " + std::string(sMarker);
    if (!sFile.empty())
        sMessage.append(" in the file: ").append(sFile);
    dialogs.showMessage(sMessage.append(CANNOT_CONTINUE));
    return false;
}

bool checkFileString(std::string_view sText, std::string_view sFile, IUserDialogs& dialogs)
{
    if (!sText.empty())
        return true;
    dialogs.showMessage("Empty file string found in: " + std::string(sFile) + std::string(CANNOT_CONTINUE));
    return false;
}

} // namespace velmora
