#pragma once

// Internal: the GenICam XML of simulated devices, put together from modules.

#include <string>
#include <vector>

namespace LxDetail
{

/// A file of XML/: one category at the top level, named as the file, and its features.
struct SimulatedXMLModule
{
    std::string mCategory;
    std::string mText;
};

/// All modules, by name.
const std::vector<SimulatedXMLModule> &GetSimulatedXMLModules();

/// An XML for a device with these categories, in this order, and these further nodes (its registers). "Outer\\Inner"
/// puts a category into one that stands before it. Modules of its own follow at the end.
std::string MakeSimulatedXML(const std::string &aVendor, const std::string &aModel,
                             const std::vector<std::string> &aCategories, const std::string &aNodes,
                             const std::vector<SimulatedXMLModule> &aModules = {});

}  // namespace LxDetail
