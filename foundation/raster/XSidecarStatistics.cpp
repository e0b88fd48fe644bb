#include "foundation/raster/XSidecarStatistics.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XString.h"
#include "foundation/reference/XGdalErrors.h"

#include <cpl_minixml.h>
#include <cpl_string.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr vsi_l_offset kMostBytes = vsi_l_offset(64) << 20;
constexpr int kBins = 256;

/// Upper end of 256 bins of equal width that hold what tagXBandStatistics counts in each.
double HistogramEnd(const tagXBandStatistics& s)
{
    return s.max > s.min ? s.max + (s.max - s.min) / (kBins - 1) : s.min + 1.0;
}

CPLXMLTreeCloser Parse(const XString& name)
{
    VSIStatBufL status;
    const bool isSound =
        VSIStatL(name, &status) == 0 && static_cast<vsi_l_offset>(status.st_size) <= kMostBytes;
    return CPLXMLTreeCloser(isSound ? CPLParseXMLFile(name) : nullptr);
}

CPLXMLNode* FindBand(CPLXMLNode* root, int number)
{
    for (CPLXMLNode* node = root->psChild; node; node = node->psNext) {
        if (node->eType != CXT_Element || !EQUAL(node->pszValue, "PAMRasterBand")) continue;
        std::int64_t own = 0;
        if (XfnReadInteger(CPLGetXMLValue(node, "band", ""), own) && own == number) return node;
    }
    return nullptr;
}

/// The metadata of no domain.
CPLXMLNode* FindMetadata(CPLXMLNode* band)
{
    for (CPLXMLNode* node = band->psChild; node; node = node->psNext)
        if (node->eType == CXT_Element && EQUAL(node->pszValue, "Metadata") &&
            EQUAL(CPLGetXMLValue(node, "domain", ""), ""))
            return node;
    return nullptr;
}

CPLXMLNode* FindItem(CPLXMLNode* metadata, const char* key)
{
    for (CPLXMLNode* node = metadata ? metadata->psChild : nullptr; node; node = node->psNext)
        if (node->eType == CXT_Element && EQUAL(node->pszValue, "MDI") &&
            EQUAL(CPLGetXMLValue(node, "key", ""), key))
            return node;
    return nullptr;
}

int ReadItem(CPLXMLNode* metadata, const char* key, double& value)
{
    CPLXMLNode* node = FindItem(metadata, key);
    return node && XfnReadNumber(CPLGetXMLValue(node, "", ""), value) > 0;
}

void SetItem(CPLXMLNode* metadata, const char* key, const XString& value)
{
    if (CPLXMLNode* old = FindItem(metadata, key)) {
        CPLRemoveXMLChild(metadata, old);
        CPLDestroyXMLNode(old);
    }
    if (value.IsEmpty()) return;
    CPLXMLNode* node = CPLCreateXMLNode(metadata, CXT_Element, "MDI");
    CPLAddXMLAttributeAndValue(node, "key", key);
    CPLCreateXMLNode(node, CXT_Text, value);
}

void ReadHistogram(CPLXMLNode* band, tagXBandStatistics& statistics)
{
    CPLXMLNode* item = CPLGetXMLNode(band, "Histograms.HistItem");
    if (!item || !EQUAL(CPLGetXMLValue(item, "Approximate", "0"), "0")) return;
    const CPLStringList words(CSLTokenizeString2(CPLGetXMLValue(item, "HistCounts", ""), "|", 0));
    if (words.size() != kBins) return;
    long long counts[kBins];
    for (int i = 0; i < kBins; ++i) {
        std::int64_t count = 0;
        XfnReadInteger(words[i], count);
        counts[i] = count;
    }
    XfnTakeHistogram(XfnToDouble(CPLGetXMLValue(item, "HistMin", "")),
                     XfnToDouble(CPLGetXMLValue(item, "HistMax", "")), counts, kBins, statistics);
}

void WriteHistogram(CPLXMLNode* band, const tagXBandStatistics& statistics)
{
    if (CPLXMLNode* old = CPLGetXMLNode(band, "Histograms")) {
        CPLRemoveXMLChild(band, old);
        CPLDestroyXMLNode(old);
    }
    if (!statistics.hasHistogram || statistics.isHistogramEstimated) return;
    XString counts;
    for (int i = 0; i < kBins; ++i)
        counts +=
            XfnFormat(i ? "|%lld" : "%lld", statistics.histogram[static_cast<std::size_t>(i)]);
    CPLXMLNode* item = CPLCreateXMLNode(CPLCreateXMLNode(band, CXT_Element, "Histograms"),
                                        CXT_Element, "HistItem");
    CPLCreateXMLElementAndValue(item, "HistMin", XfnFormatShortest(statistics.min));
    CPLCreateXMLElementAndValue(item, "HistMax", XfnFormatShortest(HistogramEnd(statistics)));
    CPLCreateXMLElementAndValue(item, "BucketCount", "256");
    CPLCreateXMLElementAndValue(item, "IncludeOutOfRange", "1");
    CPLCreateXMLElementAndValue(item, "Approximate", "0");
    CPLCreateXMLElementAndValue(item, "HistCounts", counts);
}

} // namespace

int XfnArePossible(const tagXBandStatistics& s)
{
    if (!s.IsSet() || !(s.min <= s.mean && s.mean <= s.max)) return 0;
    // half the range, by the root of two for two samples and a divisor of n - 1; the rest is for
    // numbers that were written with few digits
    const double size = std::max(std::fabs(s.min), std::fabs(s.max));
    return s.stdDev >= 0.0 && s.stdDev <= 0.7072 * (s.max - s.min) + 1e-6 * size;
}

void XfnTakeHistogram(double low, double high, const long long* counts, int bins,
                      tagXBandStatistics& statistics)
{
    const double slack = 1e-9 * std::max(std::fabs(statistics.max - statistics.min), 1e-300);
    if (bins != kBins || !(std::fabs(low - statistics.min) <= slack) ||
        !(std::fabs(high - HistogramEnd(statistics)) <= slack + 1e-12 * std::fabs(high)))
        return;
    long long total = 0;
    for (int i = 0; i < kBins; ++i) {
        if (counts[i] < 0 || counts[i] > (1LL << 60) - total) return;
        total += counts[i];
    }
    if (total < 1) return;
    std::copy(counts, counts + kBins, statistics.histogram.begin());
    statistics.hasHistogram = 1;
    statistics.count = total;
}

std::map<int, tagXBandStatistics> XfnReadSidecarStatistics(const XString& name)
{
    const XGdalErrors errors;
    std::map<int, tagXBandStatistics> all;
    const CPLXMLTreeCloser tree = Parse(name);
    CPLXMLNode* root = tree.get() ? CPLGetXMLNode(tree.get(), "=PAMDataset") : nullptr;
    for (CPLXMLNode* band = root ? root->psChild : nullptr; band; band = band->psNext) {
        std::int64_t number = 0;
        if (band->eType != CXT_Element || !EQUAL(band->pszValue, "PAMRasterBand") ||
            !XfnReadInteger(CPLGetXMLValue(band, "band", ""), number) || number < 1 ||
            number > 1000000)
            continue;
        CPLXMLNode* metadata = FindMetadata(band);
        tagXBandStatistics s;
        if (!ReadItem(metadata, "STATISTICS_MINIMUM", s.min) ||
            !ReadItem(metadata, "STATISTICS_MAXIMUM", s.max) ||
            !ReadItem(metadata, "STATISTICS_MEAN", s.mean) ||
            !ReadItem(metadata, "STATISTICS_STDDEV", s.stdDev) ||
            FindItem(metadata, "STATISTICS_APPROXIMATE") || !XfnArePossible(s))
            continue;
        ReadHistogram(band, s);
        all[static_cast<int>(number)] = s;
    }
    return all;
}

int XfnWriteSidecarStatistics(const XString& old, const XString& name, const XString& path,
                              const std::map<int, tagXBandStatistics>& statistics, XString& error)
{
    const XGdalErrors errors;
    VSIStatBufL status;
    CPLXMLTreeCloser tree(nullptr);
    if (!old.IsEmpty() && VSIStatL(old, &status) == 0) {
        tree = Parse(old);
        if (!tree.get() || !CPLGetXMLNode(tree.get(), "=PAMDataset")) {
            error = XfnFormat("\"%s\" is not what it should be and was left as it is.", old);
            return 0;
        }
    } else {
        tree = CPLXMLTreeCloser(CPLCreateXMLNode(nullptr, CXT_Element, "PAMDataset"));
    }
    CPLXMLNode* root = CPLGetXMLNode(tree.get(), "=PAMDataset");
    for (const auto& [number, s] : statistics) {
        CPLXMLNode* band = FindBand(root, number);
        if (!band) {
            band = CPLCreateXMLNode(root, CXT_Element, "PAMRasterBand");
            CPLAddXMLAttributeAndValue(band, "band", XfnFormat("%d", number));
        }
        WriteHistogram(band, s);
        CPLXMLNode* metadata = FindMetadata(band);
        if (!metadata) metadata = CPLCreateXMLNode(band, CXT_Element, "Metadata");
        for (const char* key : {"STATISTICS_APPROXIMATE", "STATISTICS_SKIPFACTORX",
                                "STATISTICS_SKIPFACTORY", "STATISTICS_VALID_PERCENT"})
            SetItem(metadata, key, XString());
        SetItem(metadata, "STATISTICS_MINIMUM", XfnFormatShortest(s.min));
        SetItem(metadata, "STATISTICS_MAXIMUM", XfnFormatShortest(s.max));
        SetItem(metadata, "STATISTICS_MEAN", XfnFormatShortest(s.mean));
        SetItem(metadata, "STATISTICS_STDDEV", XfnFormatShortest(s.stdDev));
    }
    if (CPLSerializeXMLTreeToFile(tree.get(), name) && errors.GetSentence().IsEmpty()) return 1;
    error =
        XfnFormat("\"%s\": its statistics cannot be written: the disk is full, or the like.", path);
    return 0;
}
