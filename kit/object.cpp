#include "kit/object.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <iterator>
#include <string>
#include <utility>

#include "kit/half_full_table.h"
#include "kit/manager.h"
#include "kit/object_memory.h"
#include "kit/property_names.h"
#include "kit/scene.h"

namespace zylsdk {

// One property. Most properties are a few numbers: a matrix's sixteen, a label and a text are
// held apart, made only for the properties that have them, so that the dozens of properties of
// every material of a large scene cost little.
struct KZylPropertyData {
  struct Rare {
    KString label;
    KString text;
    std::unique_ptr<std::array<double, 16>> matrix;
    Rare() = default;
    Rare(const Rare& other)
        : label(other.label),
          text(other.text),
          matrix(other.matrix ? std::make_unique<std::array<double, 16>>(*other.matrix) : nullptr) {}
  };

  const PropertyName* name = nullptr;  // kept once by the manager (kit/property_names.h)
  EZylType type = eZylUndefined;
  bool dynamic = false;
  // The numbers of a numeric value but a matrix; a time value's ticks, for the time type, which
  // has no numbers.
  std::array<double, 4> smallNumbers{};
  std::unique_ptr<Rare> rare;

  KZylPropertyData() = default;
  KZylPropertyData(KZylPropertyData&&) = default;
  KZylPropertyData& operator=(KZylPropertyData&&) = default;
  KZylPropertyData(const KZylPropertyData& other)
      : name(other.name), type(other.type), dynamic(other.dynamic) {
    CopyValue(other);
  }
  // Takes the value of a property of the same type (a matrix's numbers are among the rare parts
  // of both).
  void CopyValue(const KZylPropertyData& other) {
    smallNumbers = other.smallNumbers;
    rare = other.rare ? std::make_unique<Rare>(*other.rare) : nullptr;
  }

  Rare& RareParts() {
    if (!rare) rare = std::make_unique<Rare>();
    return *rare;
  }
  std::array<double, 16>& Matrix() {
    Rare& parts = RareParts();
    if (!parts.matrix) parts.matrix = std::make_unique<std::array<double, 16>>();
    return *parts.matrix;
  }
  // The numbers of the value: as many as ComponentCount(type) says. A matrix's are made with
  // its property.
  double* Numbers() { return type == eZylDouble44 ? Matrix().data() : smallNumbers.data(); }
  const double* Numbers() const {
    return type == eZylDouble44 ? rare->matrix->data() : smallNumbers.data();
  }
  KTime Time() const {
    int64_t ticks;
    std::memcpy(&ticks, smallNumbers.data(), sizeof ticks);
    return KTime(ticks);
  }
  void SetTime(KTime value) {
    const int64_t ticks = value.Get();
    std::memcpy(smallNumbers.data(), &ticks, sizeof ticks);
  }
  const KString& Label() const { return rare ? rare->label : NoText(); }
  const KString& Text() const { return rare ? rare->text : NoText(); }

 private:
  static const KString& NoText() {
    static const KString empty;
    return empty;
  }
};

namespace {

// Number of numeric components of a type; 0 for non-numeric types.
int ComponentCount(EZylType type) {
  switch (type) {
    case eZylBool:
    case eZylInteger:
    case eZylFloat:
    case eZylDouble:
    case eZylEnum: return 1;
    case eZylDouble3: return 3;
    case eZylDouble4: return 4;
    case eZylDouble44: return 16;
    default: return 0;
  }
}

// Initial numbers of a new property: identity for matrices, zero otherwise.
void InitialNumbers(KZylPropertyData& data) {
  if (data.type == eZylDouble44)
    for (int i = 0; i < 4; ++i) data.Numbers()[i * 5] = 1.0;
}

}  // namespace

// ---------------------------------------------------------------- KZylProperty

// The properties in the order they were added. A name is found by a scan while there are few of
// them, and past that through an open-addressing table of the names' hashes (kept, like the
// properties, in the manager's slabs: a material holds dozens of properties, and a node-based
// table would cost an allocation each); the first property of a name is found.
//
// Objects share a table until one of them writes a property (see KZylObject::OwnProperties): a
// clone holds its source's, a material its class's defaults. The object that writes gets a
// table of its own that reads through the shared one (its base) and holds only the properties
// it wrote and those it added: an effect writes two or three of the dozen defaults of its
// class. A table with many of those is made whole again (flat) and lets its base go.
struct KZylObject::PropertyTable {
  static constexpr size_t kScanned = 16;
  // Beyond this many written properties of its base, a table is made flat.
  static constexpr size_t kOverridden = 8;

  explicit PropertyTable(ObjectMemory& pool)
      : items(PooledAllocator<KZylPropertyData>(pool)),
        slots(PooledAllocator<Slot>(pool)),
        overrides(PooledAllocator<Override>(pool)) {}
  // A table for one object, reading through `shared` (or through its base when it has one).
  explicit PropertyTable(const PropertyTable& shared)
      : items(shared.base ? shared.items : Items(shared.items.get_allocator())),
        slots(shared.slots.get_allocator()),
        overrides(shared.overrides),
        base(shared.base ? shared.base : const_cast<PropertyTable*>(&shared)) {
    ++base->users;
  }
  PropertyTable& operator=(const PropertyTable&) = delete;
  ~PropertyTable() { ReleaseTable(base); }

  int users = 1;  // the objects holding this table, and the tables reading through it

  size_t Count() const { return BaseCount() + items.size(); }

  const KZylPropertyData& At(size_t index) const {
    if (index >= BaseCount()) return items[index - BaseCount()];
    for (const Override& written : overrides)
      if (written.index == index) return written.data;
    return base->items[index];
  }

  // The property for a write, in a table that only its object holds.
  KZylPropertyData& WritableAt(size_t index) {
    if (index >= BaseCount()) return items[index - BaseCount()];
    for (Override& written : overrides)
      if (written.index == index) return written.data;
    if (overrides.size() >= kOverridden) {
      MakeFlat();
      return items[index];
    }
    return overrides.emplace_back(Override{index, base->items[index]}).data;
  }

  // The first property named `name`; -1 when there is none.
  int Find(const KString& name) const {
    return FirstNamed([&name](const PropertyName* named) { return named->text == name; },
                      [&name] { return PropertyNames::Hash(name.Std()); });
  }
  // The same for a name entry of this table's manager, which keeps each name once: the entry is
  // compared instead of its characters.
  int Find(const PropertyName* name) const {
    return FirstNamed([name](const PropertyName* named) { return named == name; }, [name] { return name->hash; });
  }

  // Appends a property of that name and type, with its initial value.
  void Add(const PropertyName* name, EZylType type) {
    if (base && items.size() >= kScanned) MakeFlat();
    KZylPropertyData& data = items.emplace_back();
    data.name = name;
    data.type = type;
    InitialNumbers(data);
    if (base || items.size() <= kScanned) return;
    if (items.size() * 2 > slots.size()) {
      Rehash(std::max<size_t>(64, slots.size() * 2));
    } else {
      Place(name->hash, static_cast<int32_t>(items.size() - 1));
    }
  }

  // The flat table whose properties this one lists first, with their names, types and kinds:
  // itself or its base.
  const PropertyTable* Layout() const { return base ? base : this; }

  void Reserve(size_t count) {
    if (count > BaseCount()) items.reserve(count - BaseCount());
  }

 private:
  using Items = std::vector<KZylPropertyData, PooledAllocator<KZylPropertyData>>;
  struct Slot {
    uint32_t hash;
    int32_t index;  // of the property in `items`; negative while the slot is free
  };
  struct Override {
    size_t index;
    KZylPropertyData data;
  };

  size_t BaseCount() const { return base ? base->items.size() : 0; }

  // Takes every property into `items`, in order, and lets the base go.
  void MakeFlat() {
    Items all(items.get_allocator());
    all.reserve(Count());
    for (size_t i = 0; i < Count(); ++i) all.push_back(At(i));
    items = std::move(all);
    overrides.clear();
    ReleaseTable(std::exchange(base, nullptr));
    if (items.size() > kScanned) Rehash(HalfFullSlots(items.size(), 64));
  }

  template <class IsName, class HashOfName>
  int FirstNamed(IsName isName, HashOfName hashOfName) const {
    // A base never changes while it is read through: its first property of the name comes
    // before any of this table's own.
    if (base) {
      const int inBase = base->FirstNamed(isName, hashOfName);
      if (inBase >= 0) return inBase;
      for (size_t i = 0; i < items.size(); ++i)
        if (isName(items[i].name)) return static_cast<int>(BaseCount() + i);
      return -1;
    }
    if (slots.empty()) {
      for (size_t i = 0; i < items.size(); ++i)
        if (isName(items[i].name)) return static_cast<int>(i);
      return -1;
    }
    // Properties of one name sit in the run of taken slots that starts at their hash.
    const uint32_t hash = hashOfName();
    const size_t mask = slots.size() - 1;
    int first = -1;
    for (size_t at = hash & mask; slots[at].index >= 0; at = (at + 1) & mask) {
      const Slot& slot = slots[at];
      if (slot.hash == hash && isName(items[static_cast<size_t>(slot.index)].name) && (first < 0 || slot.index < first))
        first = slot.index;
    }
    return first;
  }

  void Place(uint32_t hash, int32_t index) {
    const size_t mask = slots.size() - 1;
    size_t at = hash & mask;
    while (slots[at].index >= 0) at = (at + 1) & mask;
    slots[at] = {hash, index};
  }

  // A table of `size` slots (a power of two) holding every property.
  void Rehash(size_t size) {
    slots.assign(size, Slot{0, -1});
    for (size_t i = 0; i < items.size(); ++i) Place(items[i].name->hash, static_cast<int32_t>(i));
  }

  // A flat table's properties; a layered table's own, after its base's.
  Items items;
  // Never more than half full, so that every probe ends at a free slot; empty while scanning
  // and in a layered table.
  std::vector<Slot, PooledAllocator<Slot>> slots;
  // The properties of the base that this table wrote.
  std::vector<Override, PooledAllocator<Override>> overrides;
  // The flat, shared table read through; null for a flat table.
  PropertyTable* base = nullptr;
};

const KZylPropertyData* KZylProperty::Data() const {
  if (!IsValid() || mIndex >= mOwner->GetPropertyCount()) return nullptr;
  return &mOwner->mProperties->At(static_cast<size_t>(mIndex));
}

KZylPropertyData* KZylProperty::WritableData() {
  if (!IsValid() || mIndex >= mOwner->GetPropertyCount()) return nullptr;
  return &mOwner->OwnProperties().WritableAt(static_cast<size_t>(mIndex));
}

KZylProperty KZylProperty::Create(KZylObject* owner, const KString& name, EZylType type, const char* label) {
  if (!owner) return KZylProperty();
  KZylProperty existing = owner->FindProperty(name);
  if (existing.IsValid()) return existing;
  KZylProperty created = owner->AddProperty(name.Std(), type);
  KZylPropertyData* data = created.WritableData();
  if (label && *label) data->RareParts().label = label;
  data->dynamic = true;
  return created;
}

KString KZylProperty::GetName() const { return Data() ? Data()->name->text : KString(); }
KString KZylProperty::GetLabel() const { return Data() ? Data()->Label() : KString(); }
EZylType KZylProperty::GetPropertyDataType() const { return Data() ? Data()->type : eZylUndefined; }
bool KZylProperty::IsDynamic() const { return Data() && Data()->dynamic; }

bool KZylProperty::SetNumbers(const double* values, int count, bool vectorValue) {
  const int components = ComponentCount(GetPropertyDataType());
  // A scalar fits scalar types; a vector fits vector types. A value that does not fit is not a
  // write: it leaves a shared table shared.
  if (components == 0 || (components == 1) == vectorValue) return false;
  KZylPropertyData* data = WritableData();
  double* numbers = data->Numbers();
  for (int i = 0; i < components; ++i) numbers[i] = i < count ? values[i] : 0.0;
  if (data->type == eZylInteger || data->type == eZylEnum) {
    double v = numbers[0];
    numbers[0] = std::isfinite(v) ? std::trunc(std::clamp(v, -2147483648.0, 2147483647.0)) : 0.0;
  }
  if (data->type == eZylBool) numbers[0] = numbers[0] != 0.0 ? 1.0 : 0.0;
  if (data->type == eZylFloat) numbers[0] = static_cast<double>(static_cast<float>(numbers[0]));
  return true;
}

bool KZylProperty::Set(bool value) { double v = value ? 1.0 : 0.0; return SetNumbers(&v, 1, false); }
bool KZylProperty::Set(int value) { double v = value; return SetNumbers(&v, 1, false); }
bool KZylProperty::Set(double value) { return SetNumbers(&value, 1, false); }
bool KZylProperty::Set(const KZylColor& value) {
  double v[4] = {value.mRed, value.mGreen, value.mBlue, value.mAlpha};
  return SetNumbers(v, 4, true);
}
bool KZylProperty::Set(const KZylVector4& value) { return SetNumbers(value.mData, 4, true); }
bool KZylProperty::Set(const KZylMatrix& value) { return SetNumbers(&value.mData[0][0], 16, true); }

bool KZylProperty::Set(const KString& value) {
  if (GetPropertyDataType() != eZylString) return false;
  WritableData()->RareParts().text = value;
  return true;
}

bool KZylProperty::Set(KTime value) {
  if (GetPropertyDataType() != eZylTime) return false;
  WritableData()->SetTime(value);
  return true;
}

bool KZylProperty::GetBool() const { return GetDouble() != 0.0; }
int KZylProperty::GetInt() const { return static_cast<int>(GetDouble()); }

double KZylProperty::GetDouble() const {
  const KZylPropertyData* data = Data();
  return (data && ComponentCount(data->type) > 0) ? data->Numbers()[0] : 0.0;
}

KZylColor KZylProperty::GetColor() const {
  const KZylPropertyData* data = Data();
  if (!data || (data->type != eZylDouble3 && data->type != eZylDouble4)) return KZylColor();
  const double* numbers = data->Numbers();
  return KZylColor(numbers[0], numbers[1], numbers[2], data->type == eZylDouble4 ? numbers[3] : 1.0);
}

KZylVector4 KZylProperty::GetVector4() const {
  const KZylPropertyData* data = Data();
  if (!data || (data->type != eZylDouble3 && data->type != eZylDouble4)) return KZylVector4();
  const double* numbers = data->Numbers();
  return KZylVector4(numbers[0], numbers[1], numbers[2], numbers[3]);
}

KZylMatrix KZylProperty::GetMatrix() const {
  KZylMatrix m;
  const KZylPropertyData* data = Data();
  if (!data || data->type != eZylDouble44) return m;
  const double* numbers = data->Numbers();
  for (int i = 0; i < 16; ++i) m.mData[i / 4][i % 4] = numbers[i];
  return m;
}

KString KZylProperty::GetString() const {
  const KZylPropertyData* data = Data();
  return (data && data->type == eZylString) ? data->Text() : KString();
}

KTime KZylProperty::GetTime() const {
  const KZylPropertyData* data = Data();
  return (data && data->type == eZylTime) ? data->Time() : KTime();
}

std::vector<double> KZylProperty::GetNumbers() const {
  const KZylPropertyData* data = Data();
  if (!data) return {};
  int count = ComponentCount(data->type);
  const double* numbers = data->Numbers();
  return std::vector<double>(numbers, numbers + count);
}

// ---------------------------------------------------------------- KZylPlug

KZylObject* KZylPlug::Self() { return static_cast<KZylObject*>(this); }

namespace {

// What an object that was never connected answers for its sources and its destinations.
const std::vector<KZylObject*>& NoObjects() {
  static const std::vector<KZylObject*> none;
  return none;
}

// Up to this many sources, looking through them is as quick as an index and costs no memory.
constexpr size_t kSourcesScanned = 16;

// Removes `object` from `objects`, where it is at most once; connections are undone mostly in
// the reverse order they were made, so the search starts at the end.
void EraseOnce(std::vector<KZylObject*>& objects, const KZylObject* object) {
  auto found = std::find(objects.rbegin(), objects.rend(), object);
  if (found != objects.rend()) objects.erase(std::next(found).base());
}

}  // namespace

struct KZylPlug::SourceIndex {
  std::unordered_set<const KZylObject*> members;
  // The sources of each class asked for so far, in order.
  std::unordered_map<const KZylClassId*, std::vector<KZylObject*>> byClass;
};

struct KZylPlug::Links {
  std::vector<KZylObject*> sources;
  std::vector<KZylObject*> destinations;
  // Made once there are more sources than a scan should visit, so that a scene or a node with
  // thousands of them answers "already a source?" and "the i-th material" without a walk
  // through them all; the many objects with few sources pay nothing for it.
  std::unique_ptr<SourceIndex> sourceIndex;
};

KZylPlug::~KZylPlug() = default;

KZylPlug::Links& KZylPlug::OwnLinks() {
  if (!mLinks) mLinks = std::make_unique<Links>();
  return *mLinks;
}

const std::vector<KZylObject*>& KZylPlug::Sources() const { return mLinks ? mLinks->sources : NoObjects(); }

const std::vector<KZylObject*>& KZylPlug::Destinations() const {
  return mLinks ? mLinks->destinations : NoObjects();
}

bool KZylPlug::ConnectZylSrc(KZylObject* source) {
  if (!source || source == Self() || IsConnectedZylSrc(source)) return false;
  Links& links = OwnLinks();
  links.sources.push_back(source);
  if (links.sourceIndex) {
    links.sourceIndex->members.insert(source);
    for (auto& [classId, sources] : links.sourceIndex->byClass)
      if (source->Is(*classId)) sources.push_back(source);
  } else if (links.sources.size() > kSourcesScanned) {
    links.sourceIndex = std::make_unique<SourceIndex>();
    links.sourceIndex->members.insert(links.sources.begin(), links.sources.end());
  }
  static_cast<KZylPlug*>(source)->OwnLinks().destinations.push_back(Self());
  return true;
}

bool KZylPlug::DisconnectZylSrc(KZylObject* source) {
  if (!IsConnectedZylSrc(source)) return false;
  EraseOnce(mLinks->sources, source);
  if (mLinks->sourceIndex) {
    mLinks->sourceIndex->members.erase(source);
    // Made again when next asked for.
    mLinks->sourceIndex->byClass.clear();
  }
  EraseOnce(static_cast<KZylPlug*>(source)->mLinks->destinations, Self());
  return true;
}

bool KZylPlug::IsConnectedZylSrc(const KZylObject* source) const {
  if (!mLinks) return false;
  if (mLinks->sourceIndex) return mLinks->sourceIndex->members.count(source) != 0;
  return std::find(mLinks->sources.begin(), mLinks->sources.end(), source) != mLinks->sources.end();
}

const std::vector<KZylObject*>* KZylPlug::SourcesOfClass(const KZylClassId& classId) const {
  if (!mLinks || !mLinks->sourceIndex) return nullptr;
  auto [entry, made] = mLinks->sourceIndex->byClass.try_emplace(&classId);
  if (made)
    for (KZylObject* source : mLinks->sources)
      if (source->Is(classId)) entry->second.push_back(source);
  return &entry->second;
}

int KZylPlug::GetSrcObjectCount() const { return static_cast<int>(Sources().size()); }

KZylObject* KZylPlug::GetSrcObject(int index) const {
  return (index >= 0 && index < GetSrcObjectCount()) ? Sources()[static_cast<size_t>(index)] : nullptr;
}

int KZylPlug::GetSrcObjectCount(const KZylClassId& classId) const {
  if (const std::vector<KZylObject*>* sources = SourcesOfClass(classId)) return static_cast<int>(sources->size());
  const std::vector<KZylObject*>& sources = Sources();
  return static_cast<int>(std::count_if(sources.begin(), sources.end(),
                                        [&](const KZylObject* o) { return o->Is(classId); }));
}

KZylObject* KZylPlug::GetSrcObject(const KZylClassId& classId, int index) const {
  if (const std::vector<KZylObject*>* sources = SourcesOfClass(classId))
    return (index >= 0 && static_cast<size_t>(index) < sources->size()) ? (*sources)[static_cast<size_t>(index)] : nullptr;
  for (KZylObject* o : Sources())
    if (o->Is(classId) && index-- == 0) return o;
  return nullptr;
}

int KZylPlug::GetDstObjectCount() const { return static_cast<int>(Destinations().size()); }

KZylObject* KZylPlug::GetDstObject(int index) const {
  return (index >= 0 && index < GetDstObjectCount()) ? Destinations()[static_cast<size_t>(index)] : nullptr;
}

int KZylPlug::GetDstObjectCount(const KZylClassId& classId) const {
  const std::vector<KZylObject*>& destinations = Destinations();
  return static_cast<int>(std::count_if(destinations.begin(), destinations.end(),
                                        [&](const KZylObject* o) { return o->Is(classId); }));
}

KZylObject* KZylPlug::GetDstObject(const KZylClassId& classId, int index) const {
  for (KZylObject* o : Destinations())
    if (o->Is(classId) && index-- == 0) return o;
  return nullptr;
}

void KZylPlug::DisconnectAll() {
  if (!mLinks) return;
  while (!mLinks->sources.empty()) DisconnectZylSrc(mLinks->sources.back());
  while (!mLinks->destinations.empty()) static_cast<KZylPlug*>(mLinks->destinations.back())->DisconnectZylSrc(Self());
}

// ---------------------------------------------------------------- KZylObject

const KZylClassId KZylObject::ClassId = {"KZylObject", nullptr};

KZylObject::KZylObject(KZylSdkManager& manager, const char* name) : mManager(&manager), mName(name) {}

KZylObject::~KZylObject() {
  ReleaseProperties();
  // Another object may later be made at this address.
  if (!mManager->mObjectErrors.empty()) mManager->mObjectErrors.erase(this);
}

void KZylObject::ReleaseTable(PropertyTable* table) {
  if (table && --table->users == 0) delete table;
}

void KZylObject::ReleaseProperties() {
  ReleaseTable(mProperties);
  mProperties = nullptr;
}

void KZylObject::ShareProperties(PropertyTable* table) {
  ++table->users;
  ReleaseProperties();
  mProperties = table;
}

bool KZylObject::ShareClassProperties(const KZylClassId& classId) {
  auto kept = mManager->mClassProperties.find(&classId);
  if (kept == mManager->mClassProperties.end()) return false;
  ShareProperties(kept->second);
  return true;
}

void KZylObject::KeepClassProperties(const KZylClassId& classId) {
  if (!mProperties) return;
  ++mProperties->users;
  mManager->mClassProperties.emplace(&classId, mProperties);
}

int KZylObject::GetPropertyCount() const { return mProperties ? static_cast<int>(mProperties->Count()) : 0; }

const KError& KZylObject::GetError() const {
  static const KError none;
  auto kept = mManager->mObjectErrors.find(this);
  return kept != mManager->mObjectErrors.end() ? *kept->second : none;
}

KError& KZylObject::GetError() {
  std::unique_ptr<KError>& error = mManager->mObjectErrors[this];
  if (!error) error = std::make_unique<KError>();
  return *error;
}

KString KZylObject::GetNameWithoutNameSpacePrefix() const {
  int colon = mName.ReverseFind(':');
  return colon < 0 ? mName : mName.Mid(colon + 1);
}

KZylProperty KZylObject::GetProperty(int index) const {
  if (index < 0 || index >= GetPropertyCount()) return KZylProperty();
  return KZylProperty(const_cast<KZylObject*>(this), index);
}

KZylProperty KZylObject::FindProperty(const KString& name, bool) const {
  if (!mProperties) return KZylProperty();
  const int index = mProperties->Find(name);
  if (index < 0) return KZylProperty();
  return KZylProperty(const_cast<KZylObject*>(this), index);
}

KZylProperty KZylObject::AddProperty(std::string_view name, EZylType type) {
  const int index = GetPropertyCount();
  OwnProperties().Add(mManager->mPropertyNames->Intern(name), type);
  return KZylProperty(this, index);
}

KZylObject::PropertyTable& KZylObject::OwnProperties() {
  if (!mProperties) {
    mProperties = new PropertyTable(*mManager->mObjectMemory);
  } else if (mProperties->users > 1) {
    PropertyTable* own = new PropertyTable(*mProperties);
    --mProperties->users;
    mProperties = own;
  }
  return *mProperties;
}

void KZylObject::ReserveProperties(int count) {
  if (count <= 0) return;
  OwnProperties().Reserve(static_cast<size_t>(count));
}

KZylScene* KZylObject::GetScene() const {
  return static_cast<KZylScene*>(GetDstObject(KZylScene::ClassId, 0));
}

void* KZylObject::operator new(size_t bytes, KZylSdkManager& manager) { return manager.mObjectMemory->Allocate(bytes); }
void KZylObject::operator delete(void*, KZylSdkManager&) {}
void KZylObject::operator delete(void* object, size_t bytes) { ObjectMemory::Release(object, bytes); }

KZylObject* KZylObject::Clone(int) const {
  KZylObject* copy = CreateSameKind(*mManager, mName.Buffer());
  if (copy) copy->CopyFrom(*this);
  return copy;
}

KZylObject* KZylObject::CreateSameKind(KZylSdkManager&, const char*) const { return nullptr; }

// True when copying the properties of `source` into this object's would make a table like the
// source's: this object's properties are the source's first ones, of the same names, types and
// kinds (a clone's class makes the same properties), and the source's others are dynamic, as a
// copy adds them.
bool KZylObject::PropertiesCopyAsShared(const KZylObject& source) const {
  if (source.mManager != mManager || !source.mProperties) return false;
  const PropertyTable& theirs = *source.mProperties;
  const size_t own = mProperties ? mProperties->Count() : 0;
  if (own > theirs.Count()) return false;
  // A copy of a material starts from the same class table as its source: nothing to compare.
  const bool sameLayout = mProperties && mProperties->Layout() == theirs.Layout() &&
                          own <= theirs.Layout()->Count();
  for (size_t i = sameLayout ? own : 0; i < theirs.Count(); ++i) {
    const KZylPropertyData& their = theirs.At(i);
    if (i >= own) {
      if (!their.dynamic) return false;
      continue;
    }
    const KZylPropertyData& mine = mProperties->At(i);
    if (mine.name != their.name || mine.type != their.type || mine.dynamic != their.dynamic) return false;
  }
  return true;
}

void KZylObject::CopyFrom(const KZylObject& source) {
  if (!source.mProperties) return;
  if (PropertiesCopyAsShared(source)) {
    ShareProperties(source.mProperties);
    return;
  }
  const PropertyTable& theirs = *source.mProperties;
  for (size_t i = 0; i < theirs.Count(); ++i) {
    const KZylPropertyData& property = theirs.At(i);
    // Each manager keeps a name once: properties are matched by this manager's entry for it.
    const PropertyName* name = source.mManager == mManager ? property.name
                                                           : mManager->mPropertyNames->Intern(property.name->text.Std());
    int index = mProperties ? mProperties->Find(name) : -1;
    if (index < 0) {
      index = GetPropertyCount();
      OwnProperties().Add(name, property.type);
      OwnProperties().WritableAt(static_cast<size_t>(index)).dynamic = true;
    }
    KZylPropertyData& data = OwnProperties().WritableAt(static_cast<size_t>(index));
    if (data.type == property.type) data.CopyValue(property);
  }
}

void KZylObject::ForgetObjects(const ObjectSet&) {}

void KZylObject::Destroy() { mManager->DestroyObjects({this}); }

}  // namespace zylsdk
