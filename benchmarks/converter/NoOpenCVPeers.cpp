#include "Peers.h"

std::vector<Peer> GetOpenCVPeers(LxPixelType)
{
    return {};
}

bool HasOpenCV()
{
    return false;
}
