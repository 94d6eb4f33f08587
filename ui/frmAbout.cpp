#include "ui/frmAbout.h"

#include "forms/Area.h"
#include "forms/Measures.h"
#include "ui/Donation.h"
#include "ui/DonationSettings.h"

namespace marlok::ui {

namespace {

constexpr const char* description =
    "This program was written to make backing up my files easier and works very well for me. It gives you several "
    "options in how you want to do your backups and if scheduled properly you will never forget to backup your files. "
    "Like all my other programs this one is free and will not bug you to register or pay for more options. If you like "
    "the program and want to make a donation to help defray the cost of developing, maintaining and posting on the "
    "internet, click on the button below and thanks in advance.";

// Twips.
constexpr int windowWidth = 7800;
constexpr int windowHeight = 4950;
constexpr int pictureSize = 960;
constexpr int titleHeight = 540;

// Points.
constexpr int titleSize = 16;

}  // namespace

frmAbout::frmAbout(forms::Windows& windows, Machine& machine, forms::Form& mainWindow)
    : Form(windows, "frmAbout", "Marlok Backup Utility"), machine_(machine), mainWindow_(mainWindow) {
    Picture1.Picture = "program";
    Picture1.AccessibleName = Caption();
    Label4.TextFont = forms::Font{"", titleSize, true};
    Label1.Caption = description;
    Label3.Caption = std::string("Contact: ") + donation::contact;
    Label5.Visible = false;
    Label5.Alignment = forms::Label::Align::centre;
    Command1.Click = [this] { Command1_Click(); };
    Command2.Click = [this] { Command2_Click(); };
}

void frmAbout::Form_Load() {
    Desktop& desktop = machine_.desktop;
    Place((desktop.ScreenWidth() - windowWidth) / 2, (desktop.ScreenHeight() - windowHeight) / 3, windowWidth,
          windowHeight);
}

void frmAbout::Form_Resize() {
    namespace measure = forms::measure;
    forms::Area inner = forms::Area{0, 0, Width(), Height()}.Inside(2 * measure::margin);
    forms::Area head = inner.TakeTop(pictureSize, measure::margin);
    Put(Picture1, head.TakeLeft(pictureSize, measure::margin));
    Put(Label4, head.TakeTop(titleHeight));
    Put(Label2, head.TakeTop(measure::lineHeight));
    forms::Area buttons = inner.TakeBottom(measure::buttonHeight, measure::margin);
    Put(Command2, buttons.TakeRight(measure::buttonWidth, measure::gap));
    Put(Command1, buttons.TakeRight(measure::buttonWidth));
    Put(Label3, inner.TakeBottom(measure::lineHeight, measure::margin));
    Put(Label1, inner);
    Put(Label5, {inner.left, inner.top + inner.height / 3, inner.width, measure::lineHeight});
}

void frmAbout::Command1_Click() {
    if (!ConnectedForDonation(machine_)) {
        return;
    }
    Command1.Enabled = false;
    Label1.Visible = false;
    Label5.Visible = true;
    Refresh();
    OpenDonationPage(machine_);
    Hide();
    Label5.Visible = false;
    Label1.Visible = true;
    Command1.Enabled = true;
    Unload();
    mainWindow_.Unload();
}

void frmAbout::Command2_Click() {
    Hide();
    mainWindow_.Show();
    Unload();
}

}  // namespace marlok::ui
