#include "audio/wave_stream.h"

#include <algorithm>

namespace velmora {

bool CWaveStream::open(const std::filesystem::path& file, std::string& sError)
{
    close();
    if (m_main.openForReading(file, sError) && m_second.openForReading(file, sError))
        return true;
    close();
    return false;
}

void CWaveStream::prepare(int nFrames)
{
    m_buffer.assign(static_cast<std::size_t>(nFrames) * static_cast<std::size_t>(info().m_nChannels), 0.0F);
    m_uFrames.store(0, std::memory_order_relaxed);
    m_bOpen.store(true, std::memory_order_release);
}

void CWaveStream::close()
{
    finish();
    m_main.close();
    m_second.close();
    m_buffer = {};
}

CWaveStream::CRead CWaveStream::read(int nFrames)
{
    const long long nChannels = std::max(info().m_nChannels, 1);
    const long long nWanted = std::min(nFrames * nChannels, static_cast<long long>(m_buffer.size()));
    const long long nRead = m_main.readFloats(m_buffer.data(), nWanted);
    m_uFrames.fetch_add(static_cast<std::uint64_t>(nRead / nChannels), std::memory_order_relaxed);
    CRead result{m_buffer.data(), static_cast<int>(nRead), false, false};
    if (nRead == nWanted && nWanted > 0)
        return result;
    if (!isLooping()) {
        result.m_bEnd = nRead == 0;
        return result;
    }
    m_main.seekFrames(0);
    const long long nTail = m_main.readFloats(m_buffer.data() + nRead, nWanted - nRead);
    result.m_bWrapped = true;
    result.m_bEnd = nRead == 0 && nTail == 0; // not even the beginning can be read
    return result;
}

void CWaveStream::takeLoopRequest()
{
    if (m_bLoopRequested)
        m_bLoop.store(true, std::memory_order_relaxed);
    m_bLoopRequested = false;
}

} // namespace velmora
