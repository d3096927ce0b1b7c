#pragma once

#include <QString>

namespace ZelkoTest {

/// What the schema of filter files says against a file; empty if that obeys it. The program xmllint judges: without it,
/// and when it does not, the running test fails. Blocks.
QString objectionsOfFilterSchema(const QString& fileName);

} // namespace ZelkoTest
