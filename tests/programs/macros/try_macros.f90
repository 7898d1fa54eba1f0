Program Try_Macros
   Use Processor
   Use Macro_Store, Only: Start_Store, Used_Space
   Implicit None
   Integer, Parameter :: Source = 51, Product_ = 52
   Character (Len = LINE_LEN) Line
   Integer Ios

   Open (Source, Status = 'Scratch')
   Open (Product_, Status = 'Scratch')
   Write (Source, '(A)') '#define n=10', '#define twice(x)=((x)+(x))', &
      '#define swap(a,b)=t=a; a=b; b=t', 'integer :: a(n), b(twice(n))', &
      'swap(u(1,2), v)', 'print *, ''n is'', n, nn, n_', '#if n', 'n is defined', &
      '#else', 'n is not defined', '#endif', '#ifnot m', 'm is not', '#endif', &
      '#eval twice(n)*(3 + 4) - 1', '#define n=20', 'n', '#undef n', 'n', '#undef n', 'n', &
      '#define loop=loop + 1', 'loop', '#eval 1 +', '#pardon', '#define 1+=2', &
      'twice(1', '#endif', '#if x'
   Rewind Source
   Call Start_Store
   Call Process (Source, Product_)
   Rewind Product_
   Copy: Do
      Read (Product_, '(A)', Iostat = Ios) Line
      If (Ios < 0) Exit Copy
      Write (*, '(A, A)') ' | ', Line (: Min (70, Len_Trim (Line)))
   End Do Copy
   Print '(3(I4, A))', Lines_In, ' lines in,', Lines_Out, ' out,', Faults, ' faults'
   Print *, Used_Space ()
End
