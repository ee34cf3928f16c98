#include "Backends/Simulation/SimulatedXML.h"

#include <cctype>

namespace LxDetail
{

namespace
{

/// The schema wants C identifiers.
std::string ToIdentifier(const std::string &aText)
{
    std::string identifier;
    for (const char character : aText) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
            identifier += character;
        }
    }
    return identifier.empty() || std::isdigit(static_cast<unsigned char>(identifier[0])) != 0 ? "X" + identifier
                                                                                              : identifier;
}

}  // namespace

std::string MakeSimulatedXML(const std::string &aVendor, const std::string &aModel,
                             const std::vector<std::string> &aCategories, const std::string &aNodes,
                             const std::vector<SimulatedXMLModule> &aModules)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RegisterDescription ModelName=\"" +
                      ToIdentifier(aModel) + "\" VendorName=\"" + ToIdentifier(aVendor) +
                      "\" ToolTip=\"A camera that exists in memory only\" StandardNameSpace=\"GEV\""
                      " SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\""
                      " MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\""
                      " ProductGuid=\"6f6d3c1e-52c3-4b8e-9a0e-0c1d2a4f7b11\""
                      " VersionGuid=\"b5a7c9d4-8e1f-4f25-8d5e-3f6a7b8c9d02\""
                      " xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n\n"
                      "<Category Name=\"Root\" NameSpace=\"Standard\">\n";
    std::string text;
    for (const std::string &path : aCategories) {
        const size_t separator = path.find('\\');
        const std::string category = separator == std::string::npos ? path : path.substr(separator + 1);
        const std::string reference = "  <pFeature>" + category + "</pFeature>\n";
        if (separator == std::string::npos) {
            xml += reference;
        }
        else {
            const size_t outer = text.find("<Category Name=\"" + path.substr(0, separator) + '"');
            text.insert(text.find("</Category>", outer), reference);
        }
        for (const SimulatedXMLModule &module : GetSimulatedXMLModules()) {
            if (module.mCategory == category) {
                text += module.mText + "\n";
            }
        }
    }
    for (const SimulatedXMLModule &module : aModules) {
        xml += "  <pFeature>" + module.mCategory + "</pFeature>\n";
        text += module.mText + "\n";
    }
    return xml +
           "</Category>\n\n<Port Name=\"Device\" NameSpace=\"Standard\">\n"
           "  <ToolTip>The registers of the device.</ToolTip>\n</Port>\n\n" +
           text + "<Group Comment=\"Registers\">\n" + aNodes + "</Group>\n</RegisterDescription>\n";
}

}  // namespace LxDetail
