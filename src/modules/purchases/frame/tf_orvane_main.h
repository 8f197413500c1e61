#pragma once

// The module's main form: its creation prepares what every screen relies on, first of all who the
// current employee is. It shows no data.

#include <memory>
#include <string>

#include "host/form.h"

namespace orvane::modules {

/// The report generator's data module, one per main form, named after its module and point so that
/// several instances never share a name.
class TdmMiVosGenerator {
 public:
  std::string name = "dmMiVosGenerator";
};

class TfOrvaneMain : public TVosModuleForm {
 public:
  /// Throws Abort, after telling the user, when he has more than one employee record.
  explicit TfOrvaneMain(const FormIdentity& identity);
  ~TfOrvaneMain() override;

  const TdmMiVosGenerator& Generator() const { return *dmMiVosGenerator_; }

 private:
  void PrepareGenerator();
  void LoadSiblings();
  void FindCurrentEmployee();
  void ReadParameters();

  std::unique_ptr<TdmMiVosGenerator> dmMiVosGenerator_;
};

}  // namespace orvane::modules
