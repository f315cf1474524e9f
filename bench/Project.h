// The parts of a host's project that loading needs.
#pragma once

#include <boost/smart_ptr/make_shared.hpp>
#include <string>

#include "bench/Recordings.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/Parameter.h"
#include "tools/host/FixedEditRate.h"

namespace bench {

class Project {
 public:
  using Loader = VOXAScreenMetaDataLoader;

  /// `operation` is a member function of the loader, such as &Loader::loadPoints.
  template <class Operation>
  auto load(Operation operation, const std::string& streamFileName) const {
    return (m_loader.*operation)(streamFileName, "cursor", m_owner, m_rate);
  }

 private:
  const Loader m_loader;
  const boost::shared_ptr<Kestova::ThreadSafe> m_owner = boost::make_shared<Kestova::ThreadSafe>();
  const boost::shared_ptr<hosting::FixedEditRate> m_rate =
      boost::make_shared<hosting::FixedEditRate>(kEditRate);
};

}  // namespace bench
