// Three-part version numbers.
#pragma once

#include <QString>

/// Major, minor and build. A version with any negative part is unknown or invalid.
class ProductVersion
{
public:
    /// The unknown version, (-1, -1, -1).
    ProductVersion() = default;
    ProductVersion(int major, int minor, int build);
    /// Parses "1", "1.2" or "1.2.3", missing parts being 0; anything else gives the unknown
    /// version.
    explicit ProductVersion(const QString& text);

    [[nodiscard]] bool isValid() const { return m_major >= 0 && m_minor >= 0 && m_build >= 0; }

    [[nodiscard]] QString toString() const;
    bool operator<(const ProductVersion& other) const;

private:
    int m_major = -1;
    int m_minor = -1;
    int m_build = -1;
};
