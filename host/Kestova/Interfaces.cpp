// The destructors of the host's pure interfaces, so that the vtable and type information of each
// are emitted once.
#include "host/Kestova/EditRateSource.h"
#include "host/Kestova/Identified.h"
#include "host/Kestova/KeyFrameListener.h"
#include "host/Kestova/ParameterVisitor.h"
#include "host/Kestova/ProjectEditRate.h"
#include "host/Kestova/ScreenMetaData.h"
#include "host/Kestova/ScreenMetaDataFilenameSetter.h"
#include "host/Kestova/ScreenMetaDataLoader.h"
#include "host/Kestova/StatsLoader.h"

namespace Kestova {

ConstParameterVisitor::~ConstParameterVisitor() = default;
EditRateSource::~EditRateSource() = default;
Identified::~Identified() = default;
KeyFrameListener::~KeyFrameListener() = default;
ParameterVisitor::~ParameterVisitor() = default;
ProjectEditRate::~ProjectEditRate() = default;
ScreenMetaData::~ScreenMetaData() = default;
ScreenMetaDataFilenameSetter::~ScreenMetaDataFilenameSetter() = default;
ScreenMetaDataLoader::~ScreenMetaDataLoader() = default;
StatsLoader::~StatsLoader() = default;

}  // namespace Kestova
