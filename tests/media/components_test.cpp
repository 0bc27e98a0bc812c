#include "media/components.h"

#include <gtest/gtest.h>

#include "media/codecs/registry.h"
#include "media/graphics_export.h"
#include "media/graphics_import.h"

namespace {

constexpr OSType kTestFormat = MEDIA_CODE('t', 'e', 's', 't');

int openCount = 0;
int closeCount = 0;

ComponentTable countingImporter() {
  ComponentTable table{};
  table.type = GraphicsImporterComponentType;
  table.subType = kTestFormat;
  table.open = [](const ComponentTable *, void **self) -> OSErr {
    *self = &openCount;
    ++openCount;
    return noErr;
  };
  table.close = [](void *self) { closeCount += self == &openCount; };
  return table;
}

struct Registered {
  const ComponentTable *table;
  explicit Registered(const ComponentTable &added) : table(&added) {
    EXPECT_EQ(RegisterComponentTable(table), noErr);
  }
  ~Registered() { EXPECT_EQ(UnregisterComponentTable(table), noErr); }
};

TEST(Components, BuiltInOnesAnswerToTheirCodes) {
  for (const OSType type : {GraphicsImporterComponentType, GraphicsExporterComponentType}) {
    for (const OSType subType : {MEDIA_CODE('P', 'N', 'G', 'f'), MEDIA_CODE('J', 'P', 'E', 'G')}) {
      ComponentInstance instance = nullptr;
      ASSERT_EQ(OpenADefaultComponent(type, subType, &instance), noErr);
      ComponentDescription description;
      ASSERT_EQ(GetComponentInfo(instance, &description, nullptr, nullptr, nullptr), noErr);
      EXPECT_EQ(description.componentType, type);
      EXPECT_EQ(description.componentSubType, subType);
      EXPECT_EQ(CloseComponent(instance), noErr);
    }
  }
}

TEST(Components, EveryCodeOfEveryCodecIsOneOfThem) {
  const auto opens = [](OSType type, OSType subType) {
    ComponentInstance instance = nullptr;
    if (OpenADefaultComponent(type, subType, &instance) != noErr) return false;
    return CloseComponent(instance) == noErr;
  };
  for (const codecs::CodecRecord *codec : codecs::all()) {
    for (const OSType code : codec->importerCodes)
      EXPECT_TRUE(opens(GraphicsImporterComponentType, code)) << codec->name;
    if (codec->encode) {
      EXPECT_TRUE(opens(GraphicsExporterComponentType, codec->exporterCode)) << codec->name;
    }
  }
}

TEST(Components, UnknownCodesFindNothing) {
  ComponentInstance instance = nullptr;
  EXPECT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, kTestFormat, &instance), cantFindHandler);
  EXPECT_EQ(instance, nullptr);
  EXPECT_EQ(OpenADefaultComponent(kTestFormat, MEDIA_CODE('P', 'N', 'G', 'f'), &instance), cantFindHandler);
  EXPECT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, kTestFormat, nullptr), paramErr);
}

TEST(Components, ARegisteredTableIsOpenedAndClosed) {
  const ComponentTable table = countingImporter();
  const Registered registered(table);
  openCount = closeCount = 0;
  ComponentInstance instance = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, kTestFormat, &instance), noErr);
  EXPECT_EQ(openCount, 1);
  EXPECT_EQ(CloseComponent(instance), noErr);
  EXPECT_EQ(closeCount, 1);
}

TEST(Components, AnOpenThatFailsLeavesNothingToClose) {
  ComponentTable table = countingImporter();
  table.open = [](const ComponentTable *, void **) -> OSErr { return memFullErr; };
  const Registered registered(table);
  closeCount = 0;
  ComponentInstance instance = nullptr;
  EXPECT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, kTestFormat, &instance), memFullErr);
  EXPECT_EQ(instance, nullptr);
  EXPECT_EQ(closeCount, 0);
}

TEST(Components, TheLastRegisteredComesBeforeTheBuiltInOne) {
  ComponentTable table = countingImporter();
  table.subType = MEDIA_CODE('P', 'N', 'G', 'f');
  const Registered registered(table);
  openCount = 0;
  ComponentInstance instance = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, table.subType, &instance), noErr);
  EXPECT_EQ(openCount, 1);
  CloseComponent(instance);
}

TEST(Components, CallsThatATableLacksAreRefused) {
  const ComponentTable table = countingImporter();
  const Registered registered(table);
  ComponentInstance instance = nullptr;
  ASSERT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, kTestFormat, &instance), noErr);
  Handle data = NewHandle(1);
  Handle profile = nullptr;
  ImageDescriptionHandle description = nullptr;
  EXPECT_EQ(GraphicsImportSetDataHandle(instance, data), badComponentSelector);
  EXPECT_EQ(GraphicsImportGetImageDescription(instance, &description), badComponentSelector);
  EXPECT_EQ(GraphicsImportGetColorSyncProfile(instance, &profile), badComponentSelector);
  EXPECT_EQ(GraphicsImportDraw(instance), badComponentSelector);
  EXPECT_EQ(GraphicsExportSetOutputHandle(instance, data), badComponentInstance);
  CloseComponent(instance);
  DisposeHandle(data);
}

TEST(Components, NullIsAnErrorAndNotACrash) {
  EXPECT_EQ(CloseComponent(nullptr), badComponentInstance);
  ComponentDescription description;
  EXPECT_EQ(GetComponentInfo(nullptr, &description, nullptr, nullptr, nullptr), badComponentInstance);
  EXPECT_EQ(RegisterComponentTable(nullptr), paramErr);
  const ComponentTable table = countingImporter();
  EXPECT_EQ(UnregisterComponentTable(&table), cantFindHandler);
}

TEST(Components, OneIsTakenOutAndTheOthersStay) {
  const ComponentTable first = countingImporter();
  ComponentTable second = countingImporter();
  second.subType = MEDIA_CODE('t', 'w', 'o', ' ');
  ASSERT_EQ(RegisterComponentTable(&first), noErr);
  const Registered stays(second);
  EXPECT_EQ(UnregisterComponentTable(&first), noErr);
  EXPECT_EQ(UnregisterComponentTable(&first), cantFindHandler);
  ComponentInstance instance = nullptr;
  EXPECT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, kTestFormat, &instance), cantFindHandler);
  ASSERT_EQ(OpenADefaultComponent(GraphicsImporterComponentType, second.subType, &instance), noErr);
  CloseComponent(instance);
}

}  // namespace
