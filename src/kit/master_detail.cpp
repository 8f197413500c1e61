#include "kit/master_detail.h"

#include "data/abort.h"
#include "data/connection_scope.h"
#include "host/form.h"

namespace orvane::kit {

MasterDetail::MasterDetail(TVosBaseForm& form, TVosClientDataSet& master, TVosClientDataSet& detail,
                           const MasterDetailFields& fields)
    : form_(form), master_(master), detail_(detail), fields_(fields) {
  master_.BeforeScroll = [this] {
    if (detail_.ChangeCount() > 0) form_.SendWaiting();
  };
  master_.AfterScroll = [this] { Scrolled(); };
  detail_.BeforeInsert = [this] { form_.RefuseIf(!HasMaster(), fields_.noMaster); };
}

bool MasterDetail::HasMaster() const {
  return !master_.IsEmpty() && master_.State() != DataSetState::Insert;
}

/// The rows of the former master are gone before the new ones are asked for: a broken link must not
/// leave them under the wrong name.
void MasterDetail::Refetch() {
  detail_.EmptyDataSet();
  shown_ = Variant();
  if (!HasMaster()) return;
  const Variant key = master_.FieldByName(fields_.masterKey).Value();
  const ConnectionScope scope(detail_.Connection());
  detail_.SetParam(fields_.param, key);
  Read();
  shown_ = key;
}

/// Rows that could not be read leave the detail closed: it must not look as if there were none.
void MasterDetail::Read() {
  for (;;) {
    try {
      return detail_.Open();
    } catch (const ServerError& error) {
      detail_.Close();
      if (!form_.MayReadAgain(error.failure)) throw Abort();
    }
  }
}

void MasterDetail::Scrolled() {
  if (OnMasterMoved) OnMasterMoved();
  const Variant key = HasMaster() ? master_.FieldByName(fields_.masterKey).Value() : Variant();
  if (key == shown_ && (!key.IsNull() || detail_.IsEmpty())) return;
  Refetch();
}

void MasterDetail::Adopt() {
  if (detail_.State() != DataSetState::Insert) return;
  detail_.FieldByName(fields_.detailKey).Set(master_.FieldByName(fields_.masterKey).Value());
}

}  // namespace orvane::kit
