#pragma once

// Internal: the GenICam node engine on a register port.

#include <memory>
#include <string>

#include "LxGenICam/LxGenParameterArray.h"
#include "NodeMap/RegisterPort.h"

namespace LxDetail
{

/// The features that a GenICam XML describes, on the registers behind a port.
///
/// The engine of libaravis does the arithmetic; this class adds what it lacks: the lock is part of "writable";
/// implemented, available and locked follow the value chain; access, range and increment are checked before a write;
/// entries come in document order; a command knows when it is done; a write, an execution, a poll or a change of the
/// port's state notifies the feature and everything that depends on it.
///
/// Thread-safe. No lock is held while an event sink runs. While the port's state is not OK every call that would go to
/// the device returns that state at once, also when another thread is still stuck in an access.
class NodeMap
{
public:
    /// Parses the XML. GenICamError, with the reason, when it is no XML, no register description, or has no Root
    /// category; dangling references and cycles do not fail here but in the features that need them.
    static LxResult Create(std::shared_ptr<RegisterPort> aPort, const std::string &aXML,
                           std::unique_ptr<NodeMap> &aNodeMap);
    ~NodeMap();
    NodeMap(const NodeMap &) = delete;
    NodeMap &operator=(const NodeMap &) = delete;

    LxGenParameterArray *GetParameters();
    const std::string &GetXML() const;

    /// Notifies the sinks of every feature, on the calling thread: after the device came back, for example.
    void NotifyAll();
    /// Notifies the sinks of a feature and of what depends on it: a register changed behind the engine's back.
    void NotifyFeature(const std::string &aName);
    /// Writes a node that no category lists, such as TLParamsLocked. NotFound when the XML has none.
    LxResult SetInternalInteger(const std::string &aName, int64_t aValue);
    LxResult GetInternalInteger(const std::string &aName, int64_t &aValue) const;

    class Data;

private:
    explicit NodeMap(std::unique_ptr<Data> aData);
    std::unique_ptr<Data> mData;
};

}  // namespace LxDetail
