#include "NodeMap/Feature.h"

#include "NodeMap/EnumFeature.h"
#include "NodeMap/NumberFeatures.h"
#include "NodeMap/OtherFeatures.h"

namespace LxDetail
{

LxResult FillList(const std::vector<LxGenParameter *> &aFrom, LxGenParameterList &aList)
{
    aList.Clear();
    for (LxGenParameter *parameter : aFrom) {
        aList.Add(parameter);
    }
    return LxResult();
}

std::unique_ptr<Feature> MakeFeature(NodeEngine &aEngine, NodeIndex aNode, const std::string &aCategory,
                                     const std::shared_ptr<SinkDomain> &aDomain)
{
    switch (aEngine.GetType(aNode)) {
        case LxGenTypeInteger:
            return std::make_unique<IntegerFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeEnum:
            return std::make_unique<EnumFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeBoolean:
            return std::make_unique<BooleanFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeString:
            return std::make_unique<StringFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeCommand:
            return std::make_unique<CommandFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeFloat:
            return std::make_unique<FloatFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeRegister:
            return std::make_unique<RegisterFeature>(aEngine, aNode, aCategory, aDomain);
        case LxGenTypeUndefined:
            break;
    }
    return nullptr;
}

}  // namespace LxDetail
