#pragma once

#include <string>

/// Runs a shell command; false when it fails.
bool RunCommand(const std::string &aCommand);

/// A wire from this network namespace to one made for a camera. Needs root in a private namespace. What cannot be set
/// up is reported as a failure of the test.
class Wire
{
public:
    /// @param aName names the other namespace and the ends of the wire.
    /// @param aNear, aFar the addresses with prefix length; empty for none.
    Wire(const std::string &aName, const std::string &aNear, const std::string &aFar);
    ~Wire();
    Wire(const Wire &) = delete;
    Wire &operator=(const Wire &) = delete;

    std::string GetNamespace() const { return mName; }
    std::string GetNearEnd() const { return mName + "-near"; }
    std::string GetFarEnd() const { return mName + "-far"; }

private:
    const std::string mName;
};
