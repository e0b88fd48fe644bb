#include "foundation/raster/XROI.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"

#include <climits>
#include <cstdint>
#include <utility>

X_IMPLEMENT_CLASS(XROI, XObject)

namespace {

constexpr std::uint32_t kVersion = 1;

constexpr std::size_t kVertexBytes = 24;

const tagXRegionStatistics& NumbersOf(const std::shared_ptr<const tagXRegionStatistics>& numbers)
{
    static const tagXRegionStatistics kNone;
    return numbers ? *numbers : kNone;
}

} // namespace

XROI::XROI() = default;
XROI::XROI(const XROI& other) = default;
XROI& XROI::operator=(const XROI& other) = default;
XROI::~XROI() = default;

int XROI::SetType(int type)
{
    if (type != kXROIPolyline && type != kXROIPolygon) return 0;
    if (type != m_type) DropStatistics();
    m_type = type;
    return 1;
}

int XROI::Add(double x, double y, double z)
{
    DropStatistics();
    return m_vertices.Add({x, y, z});
}

int XROI::GetAt(int index, double& x, double& y, double& z) const
{
    if (index < 0 || index >= GetSize()) return 0;
    const tagXVector3& vertex = m_vertices[index];
    x = vertex.x;
    y = vertex.y;
    z = vertex.z;
    return 1;
}

void XROI::RemoveAll()
{
    DropStatistics();
    m_vertices.RemoveAll();
}

void XROI::SetNullValue(double value)
{
    if (value != m_nullValue) DropStatistics();
    m_nullValue = value;
}

int XROI::GetNumBands() const
{
    return NumbersOf(m_statistics).GetNumBands();
}

long long XROI::GetNumPoints() const
{
    return NumbersOf(m_statistics).pointCount;
}

double XROI::GetMin(int band) const
{
    return NumbersOf(m_statistics).GetMin(band);
}

double XROI::GetMax(int band) const
{
    return NumbersOf(m_statistics).GetMax(band);
}

double XROI::GetMean(int band) const
{
    return NumbersOf(m_statistics).GetMean(band);
}

double XROI::GetStd(int band) const
{
    return NumbersOf(m_statistics).GetStd(band);
}

long long XROI::GetHistogram(int band, int bin) const
{
    return NumbersOf(m_statistics).GetHistogram(band, bin);
}

double XROI::GetCovariance(int i, int j) const
{
    return NumbersOf(m_statistics).joint.GetCovariance(i, j);
}

double XROI::GetCorrelation(int i, int j) const
{
    return NumbersOf(m_statistics).joint.GetCorrelation(i, j);
}

int XROI::SetStatistics(tagXRegionStatistics statistics)
{
    if (!statistics.IsConsistent()) return 0;
    m_statistics = std::make_shared<const tagXRegionStatistics>(std::move(statistics));
    return 1;
}

void XROI::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kVersion << m_type << m_name << m_comment << m_color << m_nullValue
                << static_cast<std::uint32_t>(GetSize());
        for (const tagXVector3& vertex : m_vertices)
            archive << vertex.x << vertex.y << vertex.z;
        archive << IsCalculated();
        if (!m_statistics) return;
        tagXRegionStatistics numbers = *m_statistics;
        numbers.Serialize(archive);
        return;
    }
    std::uint32_t version = 0;
    int type = 0, isCalculated = 0;
    XROI read;
    archive >> version;
    if (version != kVersion) XFileException::Throw(XFileException::kGeneric);
    archive >> type >> read.m_name >> read.m_comment >> read.m_color >> read.m_nullValue;
    if (!read.SetType(type)) XFileException::Throw(XFileException::kGeneric);
    const std::uint32_t count = archive.ReadCount(kVertexBytes);
    if (count > INT_MAX) XFileException::Throw(XFileException::kGeneric);
    read.m_vertices.SetSize(static_cast<int>(count));
    for (tagXVector3& vertex : read.m_vertices)
        archive >> vertex.x >> vertex.y >> vertex.z;
    archive >> isCalculated;
    if (isCalculated) {
        tagXRegionStatistics numbers;
        numbers.Serialize(archive);
        read.SetStatistics(std::move(numbers));
    }
    *this = read;
}
