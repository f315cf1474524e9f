#include "host/Kestova/SafeRational.h"

#include "host/Kestova/Ratio.h"

namespace Kestova {

SafeRational::SafeRational(int64 numerator, int64 denominator) {
  const Ratio ratio = reduced(numerator, denominator);
  m_numerator = ratio.numerator;
  m_denominator = ratio.denominator;
}

}  // namespace Kestova
