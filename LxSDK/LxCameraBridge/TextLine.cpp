#include "LxCameraBridge/TextLine.h"

namespace LxDetail
{

namespace
{

constexpr size_t LongestLine = 65536;
constexpr unsigned MostStale = 1000;

}  // namespace

LxResult TextLine::Send(const std::string &aLine)
{
    // what an earlier question left behind would be taken for the answer to this one
    uint8_t stale[256];
    uint32_t read = 0;
    for (unsigned i = 0; i < MostStale && mPort->Read(stale, sizeof(stale), read, 0).IsOK(); ++i) {
    }
    const std::string line = aLine + mTerminator;
    return mPort->Write(reinterpret_cast<const uint8_t *>(line.data()), line.size());
}

LxResult TextLine::Tell(const std::string &aLine)
{
    std::lock_guard lock(mMutex);
    return Send(aLine);
}

LxResult TextLine::Ask(const std::string &aQuestion, std::string &aAnswer)
{
    std::lock_guard lock(mMutex);
    LxResult result = Send(aQuestion);
    std::string text;
    while (result.IsOK()) {
        uint8_t bytes[1024];
        uint32_t read = 0;
        result = mPort->Read(bytes, sizeof(bytes), read, mTimeout);
        text.append(reinterpret_cast<const char *>(bytes), read);
        if (const size_t end = text.find(mTerminator); end != std::string::npos) {
            aAnswer = text.substr(0, end);
            return LxResult();
        }
        if (text.size() > LongestLine) {
            return LxResult(LxResultCode::ProtocolError, "The camera's answer has no end.");
        }
    }
    if (result == LxResultCode::SerialTimeout) {
        return LxResult(LxResultCode::Timeout, "The camera does not answer to \"" + aQuestion + "\".");
    }
    return result;
}

}  // namespace LxDetail
