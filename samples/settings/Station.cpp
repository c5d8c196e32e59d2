#include "Station.h"

namespace wrenfold::demo {

const TTypeInfo& TRecorder::ClassInfo() {
  static const TTypeInfo info = Publish<TRecorder>("TRecorder", TComponent::ClassInfo());
  return info;
}

TRecorder::TRecorder(TComponent* owner, const std::string& name) : TComponent(owner) {
  SetName(name);
}

TComponent& Recorders() {
  static TComponent owner;
  if (owner.Components().empty())
    for (const char* name : {"PaperStrip", "MemoryCard", "RadioLink"}) new TRecorder(&owner, name);
  return owner;
}

const TTypeInfo& TLimits::ClassInfo() {
  static const TTypeInfo info = Publish<TLimits>("TLimits", TSpcObject::ClassInfo())
                                    .Prop("Lowest", &TLimits::Lowest)
                                    .Prop("Highest", &TLimits::Highest)
                                    .Prop("Alarm", &TLimits::Alarm);
  return info;
}

const TTypeInfo& TSensor::ClassInfo() {
  static const TTypeInfo info = Publish<TSensor>("TSensor", TSpcItem::ClassInfo())
                                    .Prop("NodeName", &TSensor::NodeName)
                                    .Prop("UnitName", &TSensor::UnitName)
                                    .Prop("Interval", &TSensor::Interval)
                                    .Prop("Trace", &TSensor::Trace)
                                    .Prop("Limits", &TSensor::Limits);
  return info;
}

const TTypeInfo& TContact::ClassInfo() {
  static const TTypeInfo info = Publish<TContact>("TContact", TSpcItem::ClassInfo())
                                    .Prop("Person", &TContact::Person)
                                    .Prop("Phone", &TContact::Phone);
  return info;
}

const TTypeInfo& TContacts::ClassInfo() {
  static const TTypeInfo info = Publish<TContacts>("TContacts", TFixedCollection::ClassInfo());
  return info;
}

const TTypeInfo& TStation::ClassInfo() {
  static const TTypeInfo info =
      Publish<TStation>("TStation", TSpcObject::ClassInfo())
          .Prop("NodeName", &TStation::NodeName)
          .Prop("Observer", &TStation::Observer)
          .Prop("Grade", &TStation::Grade)
          .Prop("Altitude", &TStation::Altitude)
          .Prop("Serial", &TStation::Serial)
          .Prop("Priority", &TStation::Priority)
          .Prop("Declination", &TStation::Declination)
          .Prop("Exposure", &TStation::Exposure)
          .Prop("Automatic", &TStation::Automatic)
          .Prop("ServiceDays", &TStation::ServiceDays)
          .Prop("Background", &TStation::Background)
          .Prop("Founded", &TStation::Founded)
          .Prop("Inspection", &TStation::Inspection)
          .Prop("FirstReading", &TStation::FirstReading)
          .Prop("ReadKey", &TStation::ReadKey)
          .Prop("PlotKey", &TStation::PlotKey)
          .Prop("Recorder", &TStation::Recorder)
          .NotStored()
          .Prop("RecorderName", &TStation::RecorderName, &TStation::SetRecorderName)
          .Prop("ReportFont", &TStation::ReportFont)
          .Prop("Photo", &TStation::Photo)
          .Prop("Emblem", &TStation::Emblem)
          .Prop("Remarks", &TStation::Remarks)
          .Prop("Duties", &TStation::Duties)
          .Prop("Region", &TStation::Region)
          .Prop("Limits", &TStation::Limits)
          .Prop("Sensors", &TStation::Sensors)
          .Prop("Contacts", &TStation::Contacts);
  return info;
}

TStation::TStation()
    : ReportFont(std::make_unique<TFontEx>()),
      Photo(std::make_unique<TPictureEx>()),
      Emblem(std::make_unique<TBitmap>()),
      Remarks(std::make_unique<TMemoStrings>()),
      Duties(std::make_unique<TCheckStrings>()),
      Region(std::make_unique<TSelectStrings>()),
      Limits(std::make_unique<TLimits>()),
      Sensors(std::make_unique<TSpcCollection>(this, TSensor::ClassInfo())),
      Contacts(std::make_unique<TContacts>(this)) {
  Duties->SetText("Read the gauges\nClean the screen\nWind the clock\n");
  Duties->SetCheckedInds("0,2");
  Region->SetText("North\nSouth\nCoast\n");
  Region->SetItemIndex(2);
}

std::string TStation::RecorderName() const {
  return Recorder != nullptr ? Recorder->Name() : std::string();
}

void TStation::SetRecorderName(const std::string& name) {
  Recorder = Recorders().FindComponent(name);
}

std::string StationTexts() {
  return "[TStation]\n"
         "Observer=Observer\nGrade=Grade of the station\nAltitude=Altitude,##metres\n"
         "Serial=Serial number\nPriority=Priority\nDeclination=Magnetic declination,##degrees\n"
         "Exposure=Exposure\nAutomatic=Automatic readings\nServiceDays=Service days\n"
         "Background=Background of plots\nFounded=Founded\nInspection=Next inspection\n"
         "FirstReading=First reading of the day\nReadKey=Hot key for a reading\n"
         "PlotKey=Hot key for a plot\nRecorder=Recorder\nReportFont=Font of reports\n"
         "Photo=Photograph\nEmblem=Emblem\nRemarks=Remarks\nDuties=Duties of the observer\n"
         "Region=Region\nLimits=Limits of the station\nSensors=Sensors\nContacts=Contacts\n"
         "[TSensor]\n"
         "NodeName=Name\nUnitName=Unit\nInterval=Interval, seconds\nTrace=Colour of the trace\n"
         "Limits=Limits of the sensor\n"
         "[TLimits]\n"
         "Lowest=Lowest value\nHighest=Highest value\nAlarm=Alarm beyond the limits\n"
         "[TContact]\n"
         "Person=Name\nPhone=Telephone\n"
         "[TExposure]\n"
         "exOpen=open country\nexSheltered=sheltered\nexUrban=built-up\n"
         "[TWeekdays]\n"
         "wdMonday=Monday\nwdTuesday=Tuesday\nwdWednesday=Wednesday\nwdThursday=Thursday\n"
         "wdFriday=Friday\n";
}

}  // namespace wrenfold::demo
