#include "host/XBandChoice.h"

#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"

#include <gtest/gtest.h>

namespace {

// Bands of 16-bit samples 1000 * band + pixel, so that every band has a stretch of its own.
void FillFile(XRSFile& file, int bands)
{
    for (int b = 0; b < bands; ++b) {
        std::vector<unsigned short> samples;
        for (int i = 0; i < 40 * 30; ++i)
            samples.push_back(static_cast<unsigned short>(1000 * (b + 1) + i));
        auto* band = new XDMBandMemory;
        band->Create(kXUInt16, 40, 30, samples.data());
        file.AddBand(band);
    }
}

class XBandChoiceTest : public ::testing::Test
{
protected:
    void Make(int bands)
    {
        FillFile(m_file, bands);
        m_choice = std::make_unique<XBandChoice>(&m_file, &m_composite);
    }
    XDMBand* Band(int index) { return m_file.GetBandAt(index); }

    XRSFile m_file;
    XDMComposite m_composite;
    std::unique_ptr<XBandChoice> m_choice;
};

TEST_F(XBandChoiceTest, TheFirstLookShowsThreeBandsWithTheirOwnStretch)
{
    Make(5);
    EXPECT_TRUE(m_choice->IsColour());
    EXPECT_EQ(m_composite.GetMode(), 1);
    // channel 2 is red
    EXPECT_EQ(m_composite.GetBand(2), Band(0));
    EXPECT_EQ(m_composite.GetBand(1), Band(1));
    EXPECT_EQ(m_composite.GetBand(0), Band(2));
    for (int channel = 0; channel < 3; ++channel) {
        const double base = 1000.0 * (3 - channel);
        EXPECT_GT(m_composite.GetCutMin(channel), base) << channel;
        EXPECT_LT(m_composite.GetCutMax(channel), base + 1200) << channel;
    }
}

TEST_F(XBandChoiceTest, OtherChannelsKeepTheirStretchAndABandComesBackWithItsOwn)
{
    Make(5);
    m_composite.SetCutRange(1, 2, 2);   // red, band 1
    m_composite.SetCutRange(30, 40, 0); // blue, band 3
    m_composite.AddHistPt(2, 200, 100);
    m_choice->SetColour(4, 1, 2);
    EXPECT_EQ(m_composite.GetBand(2), Band(4));
    EXPECT_GT(m_composite.GetCutMin(2), 5000) << "the stretch of a first look for a new band";
    EXPECT_EQ(m_composite.GetNumOfHistPts(2), 0);
    EXPECT_EQ(m_composite.GetCutMax(0), 40);
    m_choice->SetColour(0, 1, 2);
    EXPECT_EQ(m_composite.GetCutMin(2), 1);
    EXPECT_EQ(m_composite.GetCutMax(2), 2);
    EXPECT_EQ(m_composite.GetNumOfHistPts(2), 1);
}

TEST_F(XBandChoiceTest, GrayAndBackLosesNothing)
{
    Make(5);
    m_choice->SetColour(3, 2, 1);
    m_composite.SetCutRange(7, 8, 1);
    m_choice->SetGray(4);
    EXPECT_EQ(m_composite.GetMode(), 0);
    EXPECT_EQ(m_composite.GetBand(0), Band(4));
    EXPECT_EQ(m_composite.GetBand(1), nullptr);
    unsigned char table[256] = {};
    m_composite.SetCLT(table, 1); // a colour table on the gray picture
    m_composite.SetCutRange(5, 6, 0);
    m_choice->SetColourMode(true);
    EXPECT_EQ(m_composite.GetBand(2), Band(3));
    EXPECT_EQ(m_composite.GetBand(0), Band(1));
    EXPECT_EQ(m_composite.GetCutMin(1), 7);
    EXPECT_EQ(m_composite.GetCLT(1)[200], 200) << "colour channels have tables of their own";
    m_choice->SetColourMode(false);
    EXPECT_EQ(m_composite.GetBand(0), Band(4));
    EXPECT_EQ(m_composite.GetCutMax(0), 6);
    EXPECT_EQ(m_composite.GetCLT(1)[200], 0);
}

TEST_F(XBandChoiceTest, OneBandIsGrayAndWrongNumbersChangeNothing)
{
    Make(1);
    EXPECT_FALSE(m_choice->IsColour());
    m_choice->SetGray(1);
    m_choice->SetGray(-1);
    m_choice->SetColour(0, 0, 1);
    EXPECT_FALSE(m_choice->IsColour());
    EXPECT_EQ(m_composite.GetBand(0), Band(0));
    m_choice->SetColourMode(true);
    EXPECT_EQ(m_composite.GetBand(2), Band(0)) << "one band in all three colours is allowed";
    m_choice->SetColourMode(false);
    EXPECT_EQ(m_composite.GetBand(0), Band(0));
    EXPECT_EQ(m_composite.GetBand(2), nullptr);
}

TEST_F(XBandChoiceTest, PresetsFollowTheWavelengths)
{
    FillFile(m_file, 4);
    const double wavelengths[] = {830, 660, 560, 485};
    for (int i = 0; i < 4; ++i)
        Band(i)->SetWaveLength(wavelengths[i]);
    m_choice = std::make_unique<XBandChoice>(&m_file, &m_composite);
    EXPECT_EQ(m_composite.GetBand(2), Band(1)) << "red by wavelength, not by number";
    ASSERT_TRUE(m_choice->CanPreset(BandPreset::FalseColour));
    EXPECT_FALSE(m_choice->CanPreset(BandPreset::ShortWave));
    m_choice->ApplyPreset(BandPreset::FalseColour);
    EXPECT_EQ(m_composite.GetBand(2), Band(0));
    m_choice->ApplyPreset(BandPreset::ShortWave);
    EXPECT_EQ(m_composite.GetBand(2), Band(0)) << "what cannot be done changes nothing";
}

} // namespace
