#include "host/Kestova/KeyFrameException.h"

namespace Kestova {

KestovaException::KestovaException(const std::string& message) : m_message(message) {}

KestovaException::~KestovaException() = default;

KeyFrameException::KeyFrameException(const RationalTime& time, const std::string& message)
    : KestovaException(message), m_time(time) {}

KeyFrameException::~KeyFrameException() = default;

}  // namespace Kestova
