// The demonstration's specification: a weather station with a property of every kind.
#pragma once

#include <memory>
#include <string>

#include "platform/core/text/Identifiers.h"
#include "storage/rkKeyedCollections.h"
#include "storage/rkPropTypes.h"

namespace wrenfold::demo {

enum TExposure : std::uint8_t { exOpen, exSheltered, exUrban };
enum TWeekday : std::uint8_t { wdMonday, wdTuesday, wdWednesday, wdThursday, wdFriday };

}  // namespace wrenfold::demo

namespace wrenfold {

template <>
struct TEnumDescription<demo::TExposure> {
  static constexpr const char* Name = "TExposure";
  static constexpr std::array Values{"exOpen", "exSheltered", "exUrban"};
};
template <>
struct TEnumDescription<demo::TWeekday> {
  static constexpr const char* Name = "TWeekday";
  static constexpr std::array Values{"wdMonday", "wdTuesday", "wdWednesday", "wdThursday",
                                     "wdFriday"};
};
template <>
struct TSetDescription<demo::TWeekday> {
  static constexpr const char* Name = "TWeekdays";
};

}  // namespace wrenfold

namespace wrenfold::demo {

// What a station can write its readings to. Recorders exist once in the program.
class TRecorder : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TRecorder(TComponent* owner, const std::string& name);
};
// Owns the recorders.
TComponent& Recorders();

class TLimits : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  double Lowest = -40;
  double Highest = 60;
  bool Alarm = true;
};

// One instrument; instruments can be added, deleted and moved.
class TSensor : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSensor(TCollection* collection = nullptr)
      : TSpcItem(collection), Limits(std::make_unique<TLimits>()) {}
  std::string GetNodeName() const override { return NodeName; }

  std::string NodeName;
  std::string UnitName = "°C";
  TSpinInt Interval = 60;  // seconds
  TColor Trace = 0x800000;
  std::unique_ptr<TLimits> Limits;
};

// A contact, known by a key.
class TContact : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;
  std::string GetNodeName() const override { return Person; }
  bool NeedsIterate() const override { return false; }

  std::string Person;
  std::string Phone;
};

class TContacts : public TFixedCollection {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TContacts(TPersistent* owner) : TFixedCollection(owner, TContact::ClassInfo()) {}
  std::string GetUpdateName() const override { return "Person"; }
};

class TStation : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TStation();
  std::string GetNodeName() const override { return NodeName; }

  // The name stands for the recorder in files.
  std::string RecorderName() const;
  void SetRecorderName(const std::string& name);

  std::string NodeName = "Hilltop";
  std::string Observer = "A. Windsor";
  char Grade = 'B';
  std::int32_t Altitude = 412;  // metres
  std::uint32_t Serial = 3000000001;
  TSpinInt Priority = 5;
  double Declination = 2.75;  // degrees
  TExposure Exposure = exOpen;
  bool Automatic = true;
  TSet<TWeekday> ServiceDays{wdMonday, wdThursday};
  TColor Background = clWhite;
  TDateTime Founded = 36526.5;
  TDate Inspection = 45000;
  TTime FirstReading = 0.25;
  TShortCut ReadKey = 0x4000 | 'R';
  TShortCutString PlotKey = TShortCutString("Ctrl+Shift+P");
  TComponent* Recorder = nullptr;
  std::unique_ptr<TFontEx> ReportFont;
  std::unique_ptr<TPictureEx> Photo;
  std::unique_ptr<TBitmap> Emblem;
  std::unique_ptr<TMemoStrings> Remarks;
  std::unique_ptr<TCheckStrings> Duties;
  std::unique_ptr<TSelectStrings> Region;
  std::unique_ptr<TLimits> Limits;
  std::unique_ptr<TSpcCollection> Sensors;
  std::unique_ptr<TContacts> Contacts;
};

// Texts for what the tables name.
std::string StationTexts();

}  // namespace wrenfold::demo
