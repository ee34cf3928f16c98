// What the parameter classes cost over the node engine below them, and what a node map costs to make.

#include <arv.h>
#include <benchmark/benchmark.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenInteger.h"
#include "NodeMap/FaultPort.h"
#include "NodeMap/GenApiXML.h"
#include "NodeMap/IoDevice.h"
#include "NodeMap/MemoryPort.h"
#include "NodeMap/NodeMap.h"

using namespace LxDetail;

namespace
{

// Integer features on a register each, in categories of 50; every fifth has a condition and a lock.
std::string MakeXML(int aCount)
{
    std::string root;
    std::string categories;
    std::string nodes;
    for (int i = 0; i < aCount; ++i) {
        const std::string number = std::to_string(i);
        if (i % 50 == 0) {
            categories += (i > 0 ? "</Category>" : "") + ("<Category Name=\"Cat" + number + "\">");
            root += "<pFeature>Cat" + number + "</pFeature>";
        }
        categories += "<pFeature>Feature" + number + "</pFeature>";
        nodes += "<Integer Name=\"Feature" + number +
                 "\" NameSpace=\"Standard\"><ToolTip>The tool tip of a feature of an ordinary camera.</ToolTip>"
                 "<Description>A description that says a little more about the feature than its tool tip does."
                 "</Description><DisplayName>Feature " +
                 number + "</DisplayName><Visibility>Expert</Visibility>" +
                 (i % 5 == 4 ? "<pIsAvailable>Flag</pIsAvailable><pIsLocked>TLParamsLocked</pIsLocked>" : "") +
                 "<pValue>Reg" + number + "</pValue><Min>0</Min><Max>1000</Max></Integer><IntReg Name=\"Reg" + number +
                 "\"><Address>" + std::to_string(0x1000 + 4 * i) +
                 "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                 "<Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>\n";
    }
    return "<RegisterDescription SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\">"
           "<Category Name=\"Root\">" +
           root + "</Category>" + categories + "</Category>" + nodes +
           "<Integer Name=\"TLParamsLocked\"><Value>0</Value></Integer>"
           "<IntReg Name=\"Flag\"><Address>0x10</Address><Length>4</Length><AccessMode>RO</AccessMode>"
           "<pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg><Port Name=\"Device\"/>"
           "</RegisterDescription>";
}

std::shared_ptr<MemoryPort> MakePort()
{
    auto port = std::make_shared<MemoryPort>();
    port->Map(0, 0x10000);
    port->Poke32(0x10, 1);
    return port;
}

// The engine alone: one read of the same register through the same port.
void BareEngineRead(benchmark::State &aState)
{
    GenApiXML xml;
    xml.Parse(MakeXML(110));
    const auto port = MakePort();
    IoTarget target;
    target.mPort = port.get();
    const auto device = MakeIoDevice(&target);
    GObjectPtr<ArvGc> engine;
    {
        const std::lock_guard lock(ArvParserMutex());
        engine.reset(arv_gc_new(device.get(), xml.GetEngineXML().data(), xml.GetEngineXML().size()));
    }
    ArvGcNode *node = arv_gc_get_node(engine.get(), GenApiXML::GetEngineName(xml.Find("Feature0")).c_str());
    for (auto unused : aState) {
        GError *error = nullptr;
        benchmark::DoNotOptimize(arv_gc_integer_get_value(ARV_GC_INTEGER(node), &error));
    }
}
BENCHMARK(BareEngineRead);

void FeatureRead(benchmark::State &aState)
{
    std::unique_ptr<NodeMap> nodeMap;
    NodeMap::Create(MakePort(), MakeXML(110), nodeMap);
    const LxGenInteger *feature = nodeMap->GetParameters()->GetInteger("Feature0");
    for (auto unused : aState) {
        int64_t value = 0;
        if (!feature->GetValue(value).IsOK()) {
            aState.SkipWithError("cannot read");
            break;
        }
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(FeatureRead);

void FeatureWrite(benchmark::State &aState)
{
    std::unique_ptr<NodeMap> nodeMap;
    NodeMap::Create(MakePort(), MakeXML(110), nodeMap);
    LxGenInteger *feature = nodeMap->GetParameters()->GetInteger("Feature0");
    for (auto unused : aState) {
        if (!feature->SetValue(7).IsOK()) {
            aState.SkipWithError("cannot write");
            break;
        }
    }
}
BENCHMARK(FeatureWrite);

struct Sink : LxGenEventSink
{
    void OnParameterUpdate(LxGenParameter *) override {}
};

// A poll of features that all have a sink.
void Poll(benchmark::State &aState)
{
    std::unique_ptr<NodeMap> nodeMap;
    NodeMap::Create(MakePort(), MakeXML(static_cast<int>(aState.range(0))), nodeMap);
    LxGenParameterArray &array = *nodeMap->GetParameters();
    Sink sink;
    for (uint32_t i = 0; i < array.GetCount(); ++i) {
        array[i]->RegisterEventSink(&sink);
    }
    for (auto unused : aState) {
        if (!array.Poll().IsOK()) {
            aState.SkipWithError("cannot poll");
            break;
        }
    }
    for (uint32_t i = 0; i < array.GetCount(); ++i) {
        array[i]->UnregisterEventSink(&sink);
    }
}
BENCHMARK(Poll)->Arg(110)->Unit(benchmark::kMicrosecond);

void Create(benchmark::State &aState)
{
    const std::string xml = MakeXML(static_cast<int>(aState.range(0)));
    const auto port = MakePort();
    for (auto unused : aState) {
        std::unique_ptr<NodeMap> nodeMap;
        if (!NodeMap::Create(port, xml, nodeMap).IsOK()) {
            aState.SkipWithError("cannot create");
            break;
        }
    }
}
BENCHMARK(Create)->Arg(110)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);

// What a call costs once the device is known to be gone.
void FailFast(benchmark::State &aState)
{
    const auto port = std::make_shared<FaultPort>(MakePort());
    std::unique_ptr<NodeMap> nodeMap;
    NodeMap::Create(port, MakeXML(110), nodeMap);
    const LxGenInteger *feature = nodeMap->GetParameters()->GetInteger("Feature0");
    port->Vanish();
    for (auto unused : aState) {
        int64_t value = 0;
        benchmark::DoNotOptimize(feature->GetValue(value).IsOK());
    }
}
BENCHMARK(FailFast);

}  // namespace
