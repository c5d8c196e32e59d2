//---------------------------------------------------------------------------
#ifndef MainH
#define MainH
//---------------------------------------------------------------------------
#include <Classes.hpp>
#include <Controls.hpp>
#include <ExtCtrls.hpp>
#include <Forms.hpp>
#include <StdCtrls.hpp>
#include "Clock.h"
//---------------------------------------------------------------------------
class TTimeForm : public TForm
{
__published:    // Components of the form
        TLabel *TimeLabel;
        TComboBox *TaskCombo;
        TButton *StartButton;
        TTimer *Timer;
        void __fastcall FormCreate(TObject *Sender);
        void __fastcall StartButtonClick(TObject *Sender);
        void __fastcall TimerTimer(TObject *Sender);
private:
        Clock FClock;
public:
        __fastcall TTimeForm(TComponent *Owner);
};
//---------------------------------------------------------------------------
extern PACKAGE TTimeForm *TimeForm;
//---------------------------------------------------------------------------
#endif
