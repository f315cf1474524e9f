// The XML form of parameters and keyframes. docs/serialisation.md specifies it.
#include <boost/lexical_cast.hpp>
#include <string>
#include <string_view>

#include "params/KeyFrame.h"
#include "params/ParameterImpl.h"
#include "params/ValueTraits.h"
#include "text/TextBlock.h"

namespace Kestova {

namespace {

std::string xmlTime(const RationalTime& time) {
  return boost::lexical_cast<std::string>(time);
}

}  // namespace

template <class T>
void KeyFrame<T>::xmlElementName(XMLOptions& options) const {
  constexpr std::string_view kName = "Keyframe";
  text::put(options.outStream(), kName);
}

template <class T>
void KeyFrame<T>::xmlAttributes(XMLOptions& options) const {
  text::TextBlock<256> out(options.outStream());
  const auto write = [&](const auto& time, const auto& leadInLength) {
    out.write(" time=\"", time, "\" value=\"", ValueTraits<T>::xmlText(m_value),
              "\" leadInLength=\"", leadInLength, "\" ");
  };
  if (m_time.denominator() == 1 && this->leadInLength().denominator() == 1) {
    write(m_time.numerator(),
          this->leadInLength().numerator());  // without a stream for whole times
  } else {
    write(xmlTime(m_time), xmlTime(this->leadInLength()));
  }
  if (this->interpolater()) out.write(" interpolater=\"", this->interpolater()->typeName(), "\" ");
}

template <class T>
void KeyFrame<T>::xmlBody(XMLOptions& options, int indent) const {
  // Most keyframes have no metadata; this saves two virtual calls for each.
  if (this->metaDataMap() != nullptr) this->metaDataXML(options, indent);
}

template <class T>
void ParameterImpl<T>::xmlElementName(XMLOptions& options) const {
  options.outStream() << "Parameter";
}

template <class T>
void ParameterImpl<T>::xmlBody(XMLOptions& options, int indent) const {
  if (m_keyFrames.empty()) return;
  const std::string indentation = XMLable::genIndent(indent);
  options.outStream() << indentation << "<Keyframes>\n";
  const std::string noPrefix;
  for (const auto& [time, keyFrame] : m_keyFrames) keyFrame->toXML(options, indent, noPrefix);
  options.outStream() << indentation << "</Keyframes>\n";
}

#define KESTOVA_PARAMETER_XML(T)                                     \
  template void KeyFrame<T>::xmlElementName(XMLOptions&) const;      \
  template void KeyFrame<T>::xmlAttributes(XMLOptions&) const;       \
  template void KeyFrame<T>::xmlBody(XMLOptions&, int) const;        \
  template void ParameterImpl<T>::xmlElementName(XMLOptions&) const; \
  template void ParameterImpl<T>::xmlBody(XMLOptions&, int) const;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_PARAMETER_XML)

}  // namespace Kestova
