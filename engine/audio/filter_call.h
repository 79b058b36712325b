#pragma once

namespace velmora {

class CDSPFilter;
struct CEngineBuffer;

// Runs the buffer's input through the filter into its output: a plug-in by the channel mode, with the
// sidechain; a built-in module on all channels. Null is no filter and copies the input. What the filter does
// not write is silence. The crash report names the plug-in while it is being called. [audio]
void callFilter(CDSPFilter* pFilter, const CEngineBuffer& buffer);

// Makes the output of the input, or of the sidechain, spread or mixed to as many channels. [audio]
void copyInput(const CEngineBuffer& buffer) noexcept;
void copySidechain(const CEngineBuffer& buffer) noexcept;

} // namespace velmora
