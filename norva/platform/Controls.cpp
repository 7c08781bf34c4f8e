#include <norva/platform/Controls.h>

#include <norva/platform/Property.h>

namespace norva {

TCanvas::~TCanvas() = default;

const TPropertyList& TDataSource::Properties() const {
  static const TPropertyList list{
      PublishedReference("DataSet", "TDataSet", &TDataSource::DataSet),
  };
  return list;
}

void TDataSource::Notification(TComponent& Component, TOperation Operation) {
  TComponent::Notification(Component, Operation);
  DataSet.Notify(Component, Operation);
}

void TDBGrid::Notification(TComponent& Component, TOperation Operation) {
  TComponent::Notification(Component, Operation);
  DataSource.Notify(Component, Operation);
}

}  // namespace norva
