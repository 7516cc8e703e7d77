<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Abilities</name>
    <message>
        <source>Pictures of the screen can&apos;t be taken on this desktop. Opening and editing pictures works here too.</source>
        <translation>在此桌面上无法截取屏幕。在此处仍可打开和编辑图片。</translation>
    </message>
    <message>
        <source>This desktop keeps no pictures of windows that others cover.</source>
        <translation>此桌面不保留被其他窗口遮挡的窗口的图像。</translation>
    </message>
    <message>
        <source>This desktop lets no program turn the wheel.</source>
        <translation>此桌面不允许程序转动鼠标滚轮。</translation>
    </message>
    <message>
        <source>This Wayland desktop gives programs no pictures of the screen in a way that is known here. Log in to an X11 session for that; opening and editing pictures works here too.</source>
        <translation>此 Wayland 桌面没有以本程序已知的方式向程序提供屏幕图像。如需截图，请登录 X11 会话；打开和编辑图片在这里也能进行。</translation>
    </message>
    <message>
        <source>Pictures of the screen can&apos;t be taken here, since the program was started for X11 in a Wayland session. Start it without QT_QPA_PLATFORM=xcb.</source>
        <translation>此处无法截取屏幕，因为程序在 Wayland 会话中以 X11 方式启动。请不带 QT_QPA_PLATFORM=xcb 启动它。</translation>
    </message>
    <message>
        <source>Pictures of the screen can&apos;t be taken here, since the package qt6-wayland is missing. Install it, and start the program again; opening and editing pictures works meanwhile.</source>
        <translation>此处无法截取屏幕，因为缺少软件包 qt6-wayland。请安装它并重新启动程序；在此期间仍可打开和编辑图片。</translation>
    </message>
    <message>
        <source>This desktop tells no program of open menus. Take the whole screen with the countdown instead, and open the menu meanwhile.</source>
        <translation>此桌面不向程序告知打开的菜单。请改用带倒计时的全屏截图，并在倒计时期间打开菜单。</translation>
    </message>
    <message>
        <source>On this desktop keys are bound in its own settings.</source>
        <translation>在此桌面上，快捷键在桌面自己的设置中绑定。</translation>
    </message>
    <message>
        <source>This desktop tells no program of the windows of others.</source>
        <translation>此桌面不向程序告知其他程序的窗口。</translation>
    </message>
    <message>
        <source>This desktop lets no program watch its screens, so that nothing that scrolls can be taken.</source>
        <translation>此桌面不允许程序观察其屏幕，因此无法截取滚动的内容。</translation>
    </message>
    <message>
        <source>This desktop tells no program what the pointer looks like.</source>
        <translation>此桌面不告诉任何程序指针的样子。</translation>
    </message>
    <message>
        <source>This desktop lets no program keep a window above all others.</source>
        <translation>此桌面不允许程序将窗口保持在所有其他窗口之上。</translation>
    </message>
</context>
<context>
    <name>AboutBox</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>关于 %1</translation>
    </message>
    <message>
        <source>Registered</source>
        <translation>已注册</translation>
    </message>
    <message>
        <source>Not registered</source>
        <translation>未注册</translation>
    </message>
    <message>
        <source>Registered to %1</source>
        <translation>已注册给 %1</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>公司</translation>
    </message>
    <message>
        <source>Home page</source>
        <translation>主页</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>技术支持</translation>
    </message>
    <message>
        <source>Registration</source>
        <translation>注册信息</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
</context>
<context>
    <name>BackdropDialog</name>
    <message>
        <source>Sea</source>
        <translation>海</translation>
    </message>
    <message>
        <source>Evening</source>
        <translation>傍晚</translation>
    </message>
    <message>
        <source>Meadow</source>
        <translation>草地</translation>
    </message>
    <message>
        <source>Slate</source>
        <translation>石板</translation>
    </message>
    <message>
        <source>Paper</source>
        <translation>纸张</translation>
    </message>
    <message>
        <source>Blurred Picture</source>
        <translation>模糊的图片</translation>
    </message>
    <message>
        <source>Backdrop</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>S&amp;hadow</source>
        <translation>阴影(&amp;H)</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>颜色</translation>
    </message>
    <message>
        <source>Gradient</source>
        <translation>渐变</translation>
    </message>
    <message>
        <source>Blurred picture</source>
        <translation>模糊的图片</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>&amp;Ground</source>
        <translation>底色(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Colour</source>
        <translation>颜色(&amp;C)</translation>
    </message>
    <message>
        <source>S&amp;econd colour</source>
        <translation>第二种颜色(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Padding</source>
        <translation>边距(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Rounded corners</source>
        <translation>圆角(&amp;R)</translation>
    </message>
    <message>
        <source> px</source>
        <translation> 像素</translation>
    </message>
    <message>
        <source>As it comes</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>%1 : %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>Ratio of &amp;sides</source>
        <translation>宽高比(&amp;S)</translation>
    </message>
</context>
<context>
    <name>CanvasDialog</name>
    <message>
        <source>Top left</source>
        <translation>左上</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>上</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>右上</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>左</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>居中</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>右</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>左下</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>下</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>右下</translation>
    </message>
    <message>
        <source>Canvas Size</source>
        <translation>画布大小</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>宽度(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>高度(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Ground</source>
        <translation>底色(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Picture&apos;s place</source>
        <translation>图片位置(&amp;P)</translation>
    </message>
</context>
<context>
    <name>CaptureBridge</name>
    <message>
        <source>SnapWorkbench is Failing: %1: %2</source>
        <translation>SnapWorkbench 出错：%1：%2</translation>
    </message>
    <message>
        <source>Do you want to enable Scroll Capture?</source>
        <translation>要启用滚动截图吗？</translation>
    </message>
    <message>
        <source>Scroll Capture allows you to select the scrolling area by just one click. 
Click No to continue common capture, or Enable Scroll Capture now?</source>
        <translation>滚动截图让您只需单击一次即可选中滚动区域。
单击“否”继续普通截图，还是现在启用滚动截图？</translation>
    </message>
    <message>
        <source>Enable Scroll Capture</source>
        <translation>启用滚动截图</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Alert</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>The folder for the picture, %1, can&apos;t be used: %2</source>
        <translation>无法使用图片文件夹 %1：%2</translation>
    </message>
</context>
<context>
    <name>CaptureOverlay</name>
    <message>
        <source>Dismiss this menu </source>
        <translation>关闭此菜单</translation>
    </message>
    <message>
        <source>Abort(Esc)</source>
        <translation>取消 (Esc)</translation>
    </message>
    <message>
        <source>Change magnifier view mode</source>
        <translation>切换放大镜视图</translation>
    </message>
</context>
<context>
    <name>CapturePage</name>
    <message>
        <source>After a Grab</source>
        <translation>截图之后</translation>
    </message>
    <message>
        <source>Open in a &amp;tab</source>
        <translation>在标签页中打开(&amp;T)</translation>
    </message>
    <message>
        <source>C&amp;opy to the clipboard</source>
        <translation>复制到剪贴板(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Save in the folder for pictures</source>
        <translation>保存到图片文件夹(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Read the text and copy it</source>
        <translation>识别文字并复制(&amp;R)</translation>
    </message>
    <message>
        <source>Show a &amp;notification</source>
        <translation>显示通知(&amp;N)</translation>
    </message>
    <message>
        <source>Marking</source>
        <translation>选取</translation>
    </message>
    <message>
        <source>Take &amp;when the button is released</source>
        <translation>松开鼠标按钮时截取(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Double click takes</source>
        <translation>双击即截取(&amp;D)</translation>
    </message>
    <message>
        <source>C&amp;lear selection</source>
        <translation>选区保持原色(&amp;L)</translation>
    </message>
    <message>
        <source>Free&amp;ze the screen while choosing</source>
        <translation>选取时冻结屏幕(&amp;Z)</translation>
    </message>
    <message>
        <source>On this desktop the screen always stands still while you choose.</source>
        <translation>在此桌面上，选取时屏幕总是静止的。</translation>
    </message>
    <message>
        <source>Show the &amp;pointer in pictures</source>
        <translation>在图片中显示指针(&amp;P)</translation>
    </message>
    <message>
        <source>A picture has to go somewhere. Choose something below first: copying, saving or reading.</source>
        <translation>图片总要有个去处。请先在下面选择其他方式：复制、保存或识别。</translation>
    </message>
    <message>
        <source>P&amp;in to the screen</source>
        <translation>钉在屏幕上(&amp;I)</translation>
    </message>
    <message>
        <source>Pins</source>
        <translation>钉住的图片</translation>
    </message>
    <message>
        <source>Show pins in pict&amp;ures</source>
        <translation>在图片中显示钉住的图片(&amp;U)</translation>
    </message>
    <message>
        <source>Bring pins &amp;back after a restart</source>
        <translation>重新启动后恢复钉住的图片(&amp;B)</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>窗口</translation>
    </message>
    <message>
        <source>K&amp;eep running in the tray when the window is closed</source>
        <translation>关闭窗口后继续在托盘中运行(&amp;E)</translation>
    </message>
</context>
<context>
    <name>CaptureRefusal</name>
    <message>
        <source>No area has been marked yet that could be taken again.</source>
        <translation>还没有标记过可以再次截取的区域。</translation>
    </message>
</context>
<context>
    <name>CodeReader</name>
    <message>
        <source>Reading codes needs the package %1.</source>
        <translation>读取条码需要软件包 %1。</translation>
    </message>
</context>
<context>
    <name>ColorPopup</name>
    <message>
        <source>Black</source>
        <translation>黑色</translation>
    </message>
    <message>
        <source>Dark grey</source>
        <translation>深灰色</translation>
    </message>
    <message>
        <source>Light grey</source>
        <translation>浅灰色</translation>
    </message>
    <message>
        <source>White</source>
        <translation>白色</translation>
    </message>
    <message>
        <source>Dark blue</source>
        <translation>深蓝色</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>蓝色</translation>
    </message>
    <message>
        <source>Light blue</source>
        <translation>浅蓝色</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>紫色</translation>
    </message>
    <message>
        <source>Dark red</source>
        <translation>深红色</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>红色</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>橙色</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黄色</translation>
    </message>
    <message>
        <source>Dark green</source>
        <translation>深绿色</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>绿色</translation>
    </message>
    <message>
        <source>Light green</source>
        <translation>浅绿色</translation>
    </message>
    <message>
        <source>Pink</source>
        <translation>粉红色</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <extracomment>A colour&apos;s name and its value, such as &quot;Red, #ff0000&quot;.</extracomment>
        <translation>%1，%2</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>颜色</translation>
    </message>
    <message>
        <source>Last used</source>
        <translation>最近使用</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>调色板</translation>
    </message>
    <message>
        <source>&amp;More Colours...</source>
        <translation>更多颜色(&amp;M)...</translation>
    </message>
</context>
<context>
    <name>ContentCapture</name>
    <message>
        <source>What has been taken so far</source>
        <translation>目前已截取的内容</translation>
    </message>
    <message>
        <source>Another window</source>
        <translation>另一个窗口</translation>
    </message>
    <message>
        <source>There is no such window any more</source>
        <translation>该窗口已不存在</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>回车键</translation>
    </message>
    <message>
        <source>keeps what there is</source>
        <translation>保留已截取的部分</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>gives up</source>
        <translation>放弃</translation>
    </message>
    <message>
        <source>%1. The picture ends at row %2.</source>
        <translation>%1。图片在第 %2 行结束。</translation>
    </message>
    <message>
        <source>%1. The picture ends at column %2.</source>
        <translation>%1。图片在第 %2 列结束。</translation>
    </message>
    <message>
        <source>%1. The key of this grab again keeps what there is, &quot;cancel&quot; gives up.</source>
        <translation>%1。再按一次此截图的快捷键可保留已有内容，“cancel”则放弃。</translation>
    </message>
</context>
<context>
    <name>ContentPick</name>
    <message>
        <source>Point at a window</source>
        <translation>请指向一个窗口</translation>
    </message>
    <message>
        <source>takes the window</source>
        <translation>截取该窗口</translation>
    </message>
    <message>
        <source>Ctrl+click, Return</source>
        <translation>Ctrl+单击、回车键</translation>
    </message>
    <message>
        <source>gives up</source>
        <translation>放弃</translation>
    </message>
    <message>
        <source>takes all that scrolls there, by the wheel</source>
        <translation>用滚轮截取该处全部滚动内容</translation>
    </message>
    <message>
        <source>takes all that scrolls in it, by the wheel</source>
        <translation>用滚轮截取其中全部滚动内容</translation>
    </message>
    <message>
        <source>Shift held</source>
        <translation>按住 Shift</translation>
    </message>
    <message>
        <source>also what lies beside the view</source>
        <translation>同时截取可见部分两侧的内容</translation>
    </message>
    <message>
        <source>H</source>
        <translation>H</translation>
    </message>
    <message>
        <source>takes what you scroll with your own hands</source>
        <translation>截取您自己滚动的内容</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>拖动</translation>
    </message>
    <message>
        <source>marks another part of a window</source>
        <translation>标记窗口的另一部分</translation>
    </message>
    <message>
        <source>marks the part of a window that scrolls</source>
        <translation>标记窗口中滚动的部分</translation>
    </message>
    <message>
        <source>Release</source>
        <translation>松开</translation>
    </message>
    <message>
        <source>marks this part: Return or H takes what scrolls in it</source>
        <translation>标记此部分：按回车键或 H 截取其中滚动的内容</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>goes to the next window</source>
        <translation>转到下一个窗口</translation>
    </message>
    <message>
        <source>Click, Space</source>
        <translation>点击、空格键</translation>
    </message>
    <message>
        <source>Marked: %1 × %2 pixels</source>
        <translation>已标记：%1 × %2 像素</translation>
    </message>
    <message>
        <source>Mark the part of the screen that scrolls</source>
        <translation>标出屏幕上滚动的部分</translation>
    </message>
    <message>
        <source>marks another part</source>
        <translation>标出另一部分</translation>
    </message>
    <message>
        <source>marks it</source>
        <translation>标出它</translation>
    </message>
    <message>
        <source>Return, H</source>
        <translation>回车键、H</translation>
    </message>
    <message>
        <source>Then</source>
        <translation>之后</translation>
    </message>
    <message>
        <source>this grab again, or a start of this program, keeps what there is</source>
        <translation>再次执行此截取，或启动本程序，会保留已有的内容</translation>
    </message>
</context>
<context>
    <name>Dialog</name>
    <message>
        <source>Snap</source>
        <translation>截取</translation>
    </message>
</context>
<context>
    <name>DialogCountDown</name>
    <message>
        <source>Press ESC to cancel</source>
        <translation>按 ESC 取消</translation>
    </message>
</context>
<context>
    <name>DialogPreference</name>
    <message>
        <source>Start</source>
        <translation>启动</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>登录时启动</translation>
    </message>
    <message>
        <source>Run Minimized</source>
        <translation>以最小化启动</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>截图</translation>
    </message>
    <message>
        <source>Hide SnapWorkbench before Snapping</source>
        <translation>截取前隐藏 SnapWorkbench</translation>
    </message>
    <message>
        <source>Show SnapWorkbench after Snapping</source>
        <translation>截取后显示 SnapWorkbench</translation>
    </message>
    <message>
        <source>Full Screen Timer</source>
        <translation>全屏倒计时</translation>
    </message>
    <message>
        <source>Magnifier</source>
        <translation>放大镜</translation>
    </message>
    <message>
        <source>Show Magnification</source>
        <translation>显示放大镜</translation>
    </message>
    <message>
        <source>Magnification</source>
        <translation>放大倍数</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>首选项</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>常规(&amp;G)</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>按键(&amp;K)</translation>
    </message>
    <message>
        <source>Marking Up</source>
        <translation>标注</translation>
    </message>
    <message>
        <source>&amp;Remember the style of each tool</source>
        <translation>记住每个工具的样式(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Capture</source>
        <translation>截图(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Files</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Keep the &amp;line colour</source>
        <translation>保留线条颜色(&amp;L)</translation>
    </message>
</context>
<context>
    <name>DigDetail</name>
    <message>
        <source>Mouse Left   Accept point
Mouse Right  Popup menu
Command+E    Change view mode
Arrows       Move region
             Alter size with Shift
             Alter to edge with Alt
             Regular with Command
Esc          Abort capture
Enter        Finish capture</source>
        <translation>鼠标左键     确定点
鼠标右键     弹出菜单
Ctrl+E       切换视图
方向键       移动区域
             Shift 改变大小
             Alt 到边缘
             Ctrl 保持规则
Esc          取消截取
Enter        完成截取</translation>
    </message>
    <message>
        <source>Mouse Left   Accept point
Mouse Right  Popup menu

Hold Command key for 45 deg.
Command+E    Change view mode
Arrows       Move by 1pixel
             10 pixels with Shift
             to edge with Alt
Esc          Abort capture
Enter        Finish capture
Backspace    Delete last point</source>
        <translation>鼠标左键     确定点
鼠标右键     弹出菜单

按住 Ctrl 限制为 45 度
Ctrl+E       切换视图
方向键       移动 1 像素
             Shift 10 像素
             Alt 到边缘
Esc          取消截取
Enter        完成截取
Backspace    删除最后一点</translation>
    </message>
</context>
<context>
    <name>DocumentFiles</name>
    <message>
        <source>&quot;%1&quot; was not saved: another program or another tab has changed the file.</source>
        <translation>“%1”未保存：其他程序或其他标签页更改了该文件。</translation>
    </message>
    <message>
        <source>&amp;Overwrite</source>
        <translation>覆盖(&amp;O)</translation>
    </message>
    <message>
        <source>There is no picture.</source>
        <translation>没有图片。</translation>
    </message>
    <message>
        <source>Saving &quot;%1&quot;...</source>
        <translation>正在保存“%1”...</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be saved: %2</source>
        <translation>无法保存“%1”：%2</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>另存为(&amp;A)...</translation>
    </message>
    <message>
        <source>Save changes to &quot;%1&quot; ?</source>
        <translation>是否保存对“%1”的更改？</translation>
    </message>
    <message>
        <source>Save all changes ?</source>
        <translation>是否保存所有更改？</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not saved: it would take the place of the file of a later version of this program.</source>
        <translation>未保存“%1”：这会替换由本程序更高版本写入的文件。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; keeps what its covers hide. Whoever gets the file can take them off.</source>
        <translation>“%1”保留了遮盖物下面的内容。得到该文件的人可以移除遮盖物。</translation>
    </message>
    <message>
        <source>Save &amp;without Layers</source>
        <translation>不带图层保存(&amp;W)</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is still there, with what the covers hide.</source>
        <translation>“%1”仍然存在，其中包含被遮盖的内容。</translation>
    </message>
    <message>
        <source>The picture is in the clipboard.</source>
        <translation>图片已复制到剪贴板。</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; is not there any more.</source>
        <translation>文件夹“%1”已不存在。</translation>
    </message>
    <message>
        <source>No program opens the folder &quot;%1&quot;.</source>
        <translation>没有程序可以打开文件夹“%1”。</translation>
    </message>
</context>
<context>
    <name>FilesPage</name>
    <message>
        <source>Where Grabs Are Saved</source>
        <translation>截图的保存位置</translation>
    </message>
    <message>
        <source>How They Are Written</source>
        <translation>截图的文件格式</translation>
    </message>
    <message>
        <source>Fol&amp;der</source>
        <translation>文件夹(&amp;D)</translation>
    </message>
    <message>
        <source>C&amp;hoose...</source>
        <translation>选择(&amp;H)...</translation>
    </message>
    <message>
        <source>Folder for Pictures</source>
        <translation>图片文件夹</translation>
    </message>
    <message>
        <source>N&amp;ame</source>
        <translation>名称(&amp;A)</translation>
    </message>
    <message>
        <source>{date}, {time}, {counter}, {application} and {title} stand for what they say. {date:dd.MM.yy} and {counter:3} set the form.</source>
        <translation>{date}、{time}、{counter}、{application} 和 {title} 分别代表日期、时间、序号、程序和标题。{date:dd.MM.yy} 和 {counter:3} 指定格式。</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>邮件</translation>
    </message>
    <message>
        <source>Inbox</source>
        <translation>收件箱</translation>
    </message>
    <message>
        <source>For example: %1</source>
        <translation>例如：%1</translation>
    </message>
    <message>
        <source>For&amp;mat</source>
        <translation>格式(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Quality</source>
        <translation>质量(&amp;Q)</translation>
    </message>
    <message>
        <source>Not used: the whole path is needed, from its first &quot;/&quot; on.</source>
        <translation>未采用：需要从第一个“/”开始的完整路径。</translation>
    </message>
    <message>
        <source>Not used: there is no such folder.</source>
        <translation>未采用：没有这个文件夹。</translation>
    </message>
    <message>
        <source>Not used: this is no folder.</source>
        <translation>未采用：这不是文件夹。</translation>
    </message>
    <message>
        <source>Not used: nothing can be written to this folder.</source>
        <translation>未采用：无法写入此文件夹。</translation>
    </message>
</context>
<context>
    <name>FrontWindow</name>
    <message>
        <source>&amp;Ask Again</source>
        <translation>再次询问(&amp;A)</translation>
    </message>
</context>
<context>
    <name>GrabCalls</name>
    <message>
        <source>Another picture is being taken.</source>
        <translation>正在截取另一张图片。</translation>
    </message>
    <message>
        <source>The picture was given up.</source>
        <translation>截取已放弃。</translation>
    </message>
    <message>
        <source>There is not enough memory for the picture.</source>
        <translation>内存不足，无法容纳该图片。</translation>
    </message>
</context>
<context>
    <name>GrabDelivery</name>
    <message>
        <source>The picture is in the clipboard.</source>
        <translation>图片已复制到剪贴板。</translation>
    </message>
    <message>
        <source>Saving the picture...</source>
        <translation>正在保存图片...</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>已保存为 %1</translation>
    </message>
    <message>
        <source>The picture was not saved.</source>
        <translation>图片未保存。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be saved: %2</source>
        <translation>无法保存“%1”：%2</translation>
    </message>
    <message>
        <source>A picture was taken</source>
        <translation>已截取图片</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>显示</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>打开文件夹</translation>
    </message>
</context>
<context>
    <name>GrabFlow</name>
    <message>
        <source>The desktop gave no picture of the screen.</source>
        <translation>桌面未提供屏幕图像。</translation>
    </message>
    <message>
        <source>No window was chosen: there is no picture.</source>
        <translation>没有选择窗口：没有图片。</translation>
    </message>
    <message>
        <source>Nothing could be read there: there is no picture.</source>
        <translation>那里读不到任何内容：没有图片。</translation>
    </message>
    <message>
        <source>The desktop has to ask you whether this program may take pictures of the screen, and does that only while its window is in front. Click on the window, and try again.</source>
        <translation>桌面需要询问您是否允许本程序截取屏幕，而且只在本程序窗口位于最前时才会询问。请单击本窗口，然后重试。</translation>
    </message>
</context>
<context>
    <name>HandCapture</name>
    <message>
        <source>Scroll it with your own hands</source>
        <translation>请自行滚动</translation>
    </message>
    <message>
        <source>Nothing moved for a minute</source>
        <translation>一分钟内没有任何移动</translation>
    </message>
    <message>
        <source>There is not enough memory for the picture</source>
        <translation>内存不足，无法保存图片</translation>
    </message>
    <message>
        <source>The picture has reached its limit: %1 pixels each way, and %2 million in all</source>
        <translation>图片已达到上限：每个方向 %1 像素，总共 %2 百万像素</translation>
    </message>
    <message>
        <source>The window left the screen</source>
        <translation>窗口已从屏幕上消失</translation>
    </message>
    <message>
        <source>The window changed its size</source>
        <translation>窗口大小已改变</translation>
    </message>
    <message>
        <source>The place was lost at column %1, and what you scrolled to after that is missing. Try again, and scroll more slowly there.</source>
        <translation>在第 %1 列处跟丢了位置，之后滚动到的内容不在图片中。请重试，并在该处放慢滚动。</translation>
    </message>
    <message>
        <source>The place was lost at row %1, and what you scrolled to after that is missing. Try again, and scroll more slowly there.</source>
        <translation>在第 %1 行处跟丢了位置，之后滚动到的内容不在图片中。请重试，并在该处放慢滚动。</translation>
    </message>
    <message>
        <source>The place is lost: scroll back to what was seen last</source>
        <translation>位置已丢失：请滚动回最后看到的内容</translation>
    </message>
    <message>
        <source>%1 × %2 pixels: more can&apos;t be taken</source>
        <translation>%1 × %2 像素：无法截取更多</translation>
    </message>
    <message>
        <source>%1 × %2 pixels</source>
        <translation>%1 × %2 像素</translation>
    </message>
    <message>
        <source>The desktop does not show this screen to the program</source>
        <translation>桌面没有向本程序显示此屏幕</translation>
    </message>
</context>
<context>
    <name>HelperServer</name>
    <message>
        <source>The picture could not be written: %1</source>
        <translation>无法写入图片：%1</translation>
    </message>
</context>
<context>
    <name>HideTextDialog</name>
    <message>
        <source>E-mail address</source>
        <translation>电子邮件地址</translation>
    </message>
    <message>
        <source>Telephone number</source>
        <translation>电话号码</translation>
    </message>
    <message>
        <source>Card number</source>
        <translation>卡号</translation>
    </message>
    <message>
        <source>Key or token</source>
        <translation>密钥或令牌</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Hide Text</source>
        <translation>隐藏文字</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>隐藏(&amp;H)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>The place in the picture</source>
        <translation>图片中的位置</translation>
    </message>
    <message>
        <source>Found in the picture</source>
        <translation>在图片中找到的内容</translation>
    </message>
    <message>
        <source>What</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>&amp;What is checked will be covered:</source>
        <translation>将遮盖勾选的内容(&amp;W)：</translation>
    </message>
    <message>
        <source>H&amp;ow:</source>
        <translation>方式(&amp;O)：</translation>
    </message>
    <message numerus="yes">
        <source>Private key, %n line(s)</source>
        <translation>
            <numerusform>私钥，%n 行</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KWinRoute</name>
    <message>
        <source>KWin gives pictures of the screen only to programs that are installed with a desktop entry which asks for them. Install Snap Workbench by its package.</source>
        <translation>KWin 只向通过桌面条目提出请求的已安装程序提供屏幕画面。请用软件包安装 Snap Workbench。</translation>
    </message>
    <message>
        <source>The desktop did not give its picture in time.</source>
        <translation>桌面没有及时给出画面。</translation>
    </message>
</context>
<context>
    <name>KeyField</name>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>This key can&apos;t be a hot key.</source>
        <translation>此键不能用作热键。</translation>
    </message>
    <message>
        <source>No key came with %1: another program, the desktop or the system may have it.</source>
        <translation>按住 %1 时没有收到其他键：它可能已被其他程序、桌面或系统占用。</translation>
    </message>
</context>
<context>
    <name>KeysPage</name>
    <message>
        <source>These keys work anywhere on the desktop:</source>
        <translation>这些按键在桌面任何地方都有效：</translation>
    </message>
    <message>
        <source>Hot keys</source>
        <translation>快捷键</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>命令</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>按键</translation>
    </message>
    <message>
        <source>Lines for the desktop&apos;s configuration</source>
        <translation>用于桌面配置的行</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>The lines are in the clipboard.</source>
        <translation>这些行已复制到剪贴板。</translation>
    </message>
    <message>
        <source>&amp;Ask the Desktop for Keys</source>
        <translation>向桌面申请按键(&amp;A)</translation>
    </message>
    <message>
        <source>This program hears no keys here that are pressed in others. Put these lines into the desktop&apos;s configuration:</source>
        <translation>此程序在这里听不到在其他程序中按下的键。请将以下几行加入桌面的配置：</translation>
    </message>
    <message>
        <source>This program hears no keys here that are pressed in others. Give each of these commands a name and a key in the desktop&apos;s settings: on GNOME under Keyboard, View and Customize Shortcuts, Custom Shortcuts.</source>
        <translation>此程序在这里听不到在其他程序中按下的键。请在桌面的设置中为每条命令指定名称和按键：在 GNOME 中为“键盘”、“查看及自定义快捷键”、“自定义快捷键”。</translation>
    </message>
    <message>
        <source>as in the preferences</source>
        <translation>按首选项</translation>
    </message>
    <message>
        <source>open a tab</source>
        <translation>打开标签页</translation>
    </message>
    <message>
        <source>copy the picture</source>
        <translation>复制图片</translation>
    </message>
    <message>
        <source>save it to a file</source>
        <translation>保存到文件</translation>
    </message>
    <message>
        <source>copy the text in it</source>
        <translation>复制其中的文字</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Hot key</source>
        <translation>热键</translation>
    </message>
    <message>
        <source>&amp;Default</source>
        <translation>默认(&amp;D)</translation>
    </message>
    <message>
        <source>Then</source>
        <translation>然后</translation>
    </message>
    <message>
        <source>Co&amp;unt down first</source>
        <translation>先倒计时(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Hot key:</source>
        <translation>热键(&amp;H)：</translation>
    </message>
    <message>
        <source>&amp;Then:</source>
        <translation>然后(&amp;T)：</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>off</source>
        <translation>关</translation>
    </message>
    <message>
        <source>active</source>
        <translation>有效</translation>
    </message>
    <message>
        <source>taken by another program</source>
        <translation>已被其他程序占用</translation>
    </message>
    <message>
        <source>changed by the desktop</source>
        <translation>已被桌面更改</translation>
    </message>
    <message>
        <source>Press the keys. Delete clears them, Escape gives up.</source>
        <translation>按下按键。Delete 清除，Esc 放弃。</translation>
    </message>
    <message>
        <source>%1 belongs to &quot;%2&quot; already.</source>
        <translation>%1 已属于“%2”。</translation>
    </message>
    <message>
        <source>%1 is needed for typing. Hold Ctrl, Alt or Meta with it.</source>
        <translation>%1 用于输入。请同时按住 Ctrl、Alt 或 Meta。</translation>
    </message>
    <message>
        <source>%1 does nothing here, since another program has it. Press other keys.</source>
        <translation>%1 在此无效，因为它已被其他程序占用。请按其他键。</translation>
    </message>
    <message>
        <source>S&amp;witch On</source>
        <translation>启用(&amp;W)</translation>
    </message>
    <message>
        <source>%1 is off, since many desktops have a use of their own for it. Switch it on, or press other keys.</source>
        <translation>%1 已关闭，因为许多桌面自己使用它。请启用，或按其他键。</translation>
    </message>
    <message>
        <source>pin it to the screen</source>
        <translation>钉在屏幕上</translation>
    </message>
</context>
<context>
    <name>LayeredFile</name>
    <message>
        <source>The file is damaged or not complete.</source>
        <translation>文件已损坏或不完整。</translation>
    </message>
    <message>
        <source>The file has too many parts.</source>
        <translation>文件的部分过多。</translation>
    </message>
    <message>
        <source>The file has two parts that are called %1.</source>
        <translation>文件中有两个名为 %1 的部分。</translation>
    </message>
    <message>
        <source>%1 is missing in the file.</source>
        <translation>文件中缺少 %1。</translation>
    </message>
    <message>
        <source>%1 is encrypted.</source>
        <translation>%1 已加密。</translation>
    </message>
    <message>
        <source>%1 is packed in a way that this program does not know.</source>
        <translation>%1 的压缩方式不为本程序所知。</translation>
    </message>
    <message>
        <source>%1 unpacks to more than a picture of this kind needs.</source>
        <translation>%1 解压后超出此类图片所需的大小。</translation>
    </message>
    <message>
        <source>%1 is damaged.</source>
        <translation>%1 已损坏。</translation>
    </message>
    <message>
        <source>This is no OpenRaster picture.</source>
        <translation>这不是 OpenRaster 图片。</translation>
    </message>
    <message>
        <source>What the file says of its shapes is damaged, so they are part of the picture now.</source>
        <translation>文件中的形状数据已损坏，形状现已成为图片的一部分。</translation>
    </message>
    <message>
        <source>A later version of this program has made the file. Its shapes can&apos;t be changed here, and it will not be written over.</source>
        <translation>此文件由本程序的更高版本写入。其形状无法在此更改，文件也不会被覆盖。</translation>
    </message>
    <message>
        <source>Another program has changed the file, so its shapes are part of the picture now.</source>
        <translation>其他程序更改了此文件，形状现已成为图片的一部分。</translation>
    </message>
    <message>
        <source>Its layers are shown as one picture, which takes their place when the file is saved.</source>
        <translation>其图层显示为一张图片，保存文件时将由这张图片取代。</translation>
    </message>
    <message>
        <source>The file has no picture of its layers put together, and this program can&apos;t put these together itself.</source>
        <translation>文件中没有合并后的图片，而本程序无法自行合并这些图层。</translation>
    </message>
    <message>
        <source>A layer could not be read: %1</source>
        <translation>有一个图层无法读取：%1</translation>
    </message>
    <message>
        <source>%1 is no PNG picture of a usable size.</source>
        <translation>%1 不是大小可用的 PNG 图片。</translation>
    </message>
    <message>
        <source>The picture has more shapes than a file with layers can have.</source>
        <translation>图片的形状数量超出带图层文件的上限。</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Shapes %1 to %2</source>
        <translation>形状 %1 至 %2</translation>
    </message>
    <message>
        <source>A file with layers can&apos;t have that many pixels.</source>
        <translation>带图层的文件不能有这么多像素。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Snap Workbench</source>
        <translation>Snap Workbench</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Capture rectangle</source>
        <translation>截取矩形</translation>
    </message>
    <message>
        <source>Capture ellipse</source>
        <translation>截取椭圆</translation>
    </message>
    <message>
        <source>Capture polygon</source>
        <translation>截取多边形</translation>
    </message>
    <message>
        <source>Capture window</source>
        <translation>截取窗口</translation>
    </message>
    <message>
        <source>Choose from all windows</source>
        <translation>从所有窗口中选择</translation>
    </message>
    <message>
        <source>Capture full screen</source>
        <translation>截取全屏</translation>
    </message>
    <message>
        <source>Capture menu</source>
        <translation>截取菜单</translation>
    </message>
    <message>
        <source>Register</source>
        <translation>注册</translation>
    </message>
    <message>
        <source>Buy now</source>
        <translation>立即购买</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>首选项</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Home page</source>
        <translation>主页</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>手形</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Ellipse</source>
        <translation>椭圆</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>箭头</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>直线</translation>
    </message>
    <message>
        <source>Freehand line</source>
        <translation>手绘线</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Line width</source>
        <translation>线宽</translation>
    </message>
    <message>
        <source>Line colour</source>
        <translation>线条颜色</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>字体</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>字号</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Real size</source>
        <translation>实际大小</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Rectangular</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Capture Rectangular</source>
        <translation>截取矩形</translation>
    </message>
    <message>
        <source>Capture Ellipse</source>
        <translation>截取椭圆</translation>
    </message>
    <message>
        <source>Arbitrary</source>
        <translation>任意形状</translation>
    </message>
    <message>
        <source>Capture Arbitrary</source>
        <translation>截取任意形状</translation>
    </message>
    <message>
        <source>All Windows</source>
        <translation>所有窗口</translation>
    </message>
    <message>
        <source>Select Window</source>
        <translation>选择窗口</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>全屏</translation>
    </message>
    <message>
        <source>Capture Full Screen</source>
        <translation>截取全屏</translation>
    </message>
    <message>
        <source>Capture Full Screen with Countdown Timer</source>
        <translation>倒计时截取全屏</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>菜单</translation>
    </message>
    <message>
        <source>Capture Menu</source>
        <translation>截取菜单</translation>
    </message>
    <message>
        <source>Cancel Capture</source>
        <translation>放弃截取</translation>
    </message>
    <message>
        <source>Show Snapworkbench</source>
        <translation>显示 Snap Workbench</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Close %1</source>
        <translation>关闭 %1</translation>
    </message>
    <message>
        <source>Save %1</source>
        <translation>保存 %1</translation>
    </message>
    <message>
        <source>Save %1 As...</source>
        <translation>另存 %1...</translation>
    </message>
    <message>
        <source>Close All</source>
        <translation>全部关闭</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>全部保存</translation>
    </message>
    <message>
        <source>Ctrl+Alt+R</source>
        <translation>Ctrl+Alt+R</translation>
    </message>
    <message>
        <source>Ctrl+Alt+E</source>
        <translation>Ctrl+Alt+E</translation>
    </message>
    <message>
        <source>Ctrl+Alt+A</source>
        <translation>Ctrl+Alt+A</translation>
    </message>
    <message>
        <source>Ctrl+Alt+L</source>
        <translation>Ctrl+Alt+L</translation>
    </message>
    <message>
        <source>Ctrl+Alt+W</source>
        <translation>Ctrl+Alt+W</translation>
    </message>
    <message>
        <source>Ctrl+Alt+S</source>
        <translation>Ctrl+Alt+S</translation>
    </message>
    <message>
        <source>Ctrl+Alt+T</source>
        <translation>Ctrl+Alt+T</translation>
    </message>
    <message>
        <source>Ctrl+Alt+M</source>
        <translation>Ctrl+Alt+M</translation>
    </message>
    <message>
        <source>Ctrl+Alt+V</source>
        <translation>Ctrl+Alt+V</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>Ctrl+Shift+W</source>
        <translation>Ctrl+Shift+W</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>Ctrl+C</source>
        <translation>Ctrl+C</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Ctrl+Z</source>
        <translation>Ctrl+Z</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Z</source>
        <translation>Ctrl+Shift+Z</translation>
    </message>
    <message>
        <source>&amp;sys</source>
        <translation>系统(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Preferences</source>
        <translation>首选项(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>打开...</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>目录</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>主页</translation>
    </message>
    <message>
        <source>Register...</source>
        <translation>注册...</translation>
    </message>
    <message>
        <source>&amp;Capture</source>
        <translation>截图(&amp;C)</translation>
    </message>
    <message>
        <source>../Resources/Help/index.html</source>
        <translation>../Resources/Help/zh_CN/index.html</translation>
    </message>
    <message>
        <source>Ctrl+1</source>
        <translation>Ctrl+1</translation>
    </message>
    <message>
        <source>Ctrl+2</source>
        <translation>Ctrl+2</translation>
    </message>
    <message>
        <source>Ctrl+3</source>
        <translation>Ctrl+3</translation>
    </message>
    <message>
        <source>Ctrl+4</source>
        <translation>Ctrl+4</translation>
    </message>
    <message>
        <source>Ctrl+5</source>
        <translation>Ctrl+5</translation>
    </message>
    <message>
        <source>Ctrl+6</source>
        <translation>Ctrl+6</translation>
    </message>
    <message>
        <source>Ctrl+7</source>
        <translation>Ctrl+7</translation>
    </message>
    <message>
        <source>Ctrl+=</source>
        <translation>Ctrl+=</translation>
    </message>
    <message>
        <source>Ctrl+-</source>
        <translation>Ctrl+-</translation>
    </message>
    <message>
        <source>Ctrl+0</source>
        <translation>Ctrl+0</translation>
    </message>
    <message>
        <source>Ctrl+K</source>
        <translation>Ctrl+K</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>Ctrl+M</source>
        <translation>Ctrl+M</translation>
    </message>
    <message>
        <source>F11</source>
        <translation>F11</translation>
    </message>
    <message>
        <source>The settings can&apos;t be saved: %1</source>
        <translation>无法保存设置：%1</translation>
    </message>
    <message>
        <source>Nothing can be drawn outside the picture. A thin line shows where it ends.</source>
        <translation>无法在图片之外绘制。细线标出了图片的边缘。</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>样式</translation>
    </message>
    <message>
        <source>Crop</source>
        <translation>裁剪</translation>
    </message>
    <message>
        <source>C</source>
        <translation>C</translation>
    </message>
    <message>
        <source>Highlighter</source>
        <translation>荧光笔</translation>
    </message>
    <message>
        <source>H</source>
        <translation>H</translation>
    </message>
    <message>
        <source>Numbered marker</source>
        <translation>编号标记</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>Measure</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>M</source>
        <translation>M</translation>
    </message>
    <message>
        <source>Pipette</source>
        <translation>取色器</translation>
    </message>
    <message>
        <source>I</source>
        <translation>I</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>S</source>
        <translation>S</translation>
    </message>
    <message>
        <source>Spotlight</source>
        <translation>聚光灯</translation>
    </message>
    <message>
        <source>L</source>
        <translation>L</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>撤销(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>重做(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>Sel&amp;ect All</source>
        <translation>全选(&amp;E)</translation>
    </message>
    <message>
        <source>Ctrl+A</source>
        <translation>Ctrl+A</translation>
    </message>
    <message>
        <source>Edit Te&amp;xt</source>
        <translation>编辑文字(&amp;X)</translation>
    </message>
    <message>
        <source>Du&amp;plicate</source>
        <translation>复制一份(&amp;P)</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>Dele&amp;te</source>
        <translation>删除(&amp;T)</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Del</translation>
    </message>
    <message>
        <source>&amp;Bring Forward</source>
        <translation>上移一层(&amp;B)</translation>
    </message>
    <message>
        <source>Shift+PgUp</source>
        <translation>Shift+PgUp</translation>
    </message>
    <message>
        <source>Send Bac&amp;kward</source>
        <translation>下移一层(&amp;K)</translation>
    </message>
    <message>
        <source>Shift+PgDown</source>
        <translation>Shift+PgDown</translation>
    </message>
    <message>
        <source>Re&amp;size...</source>
        <translation>调整大小(&amp;S)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+R</source>
        <translation>Ctrl+Shift+R</translation>
    </message>
    <message>
        <source>C&amp;anvas Size...</source>
        <translation>画布大小(&amp;A)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>Rotate &amp;Left</source>
        <translation>向左旋转(&amp;L)</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Ctrl+L</translation>
    </message>
    <message>
        <source>Rotate by 180 &amp;Degrees</source>
        <translation>旋转 180 度(&amp;D)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+L</source>
        <translation>Ctrl+Shift+L</translation>
    </message>
    <message>
        <source>Flip &amp;Horizontally</source>
        <translation>水平翻转(&amp;H)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+H</source>
        <translation>Ctrl+Shift+H</translation>
    </message>
    <message>
        <source>Flip &amp;Vertically</source>
        <translation>垂直翻转(&amp;V)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+V</source>
        <translation>Ctrl+Shift+V</translation>
    </message>
    <message>
        <source>Ctrl+Shift+K</source>
        <translation>Ctrl+Shift+K</translation>
    </message>
    <message>
        <source>&amp;Copy %1</source>
        <translation>复制 %1(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>Blur</source>
        <translation>模糊</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Blurring well-known text protects it less than covering it does.</source>
        <translation>对众所周知的文字，模糊不如遮盖安全。</translation>
    </message>
    <message>
        <source>Pixelate</source>
        <translation>像素化</translation>
    </message>
    <message>
        <source>P</source>
        <translation>P</translation>
    </message>
    <message>
        <source>Solid Cover</source>
        <translation>遮盖</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Copy Text</source>
        <translation>复制文字</translation>
    </message>
    <message>
        <source>T</source>
        <translation>T</translation>
    </message>
    <message>
        <source>Cop&amp;y Text</source>
        <translation>复制文字(&amp;Y)</translation>
    </message>
    <message>
        <source>Ctrl+T</source>
        <translation>Ctrl+T</translation>
    </message>
    <message>
        <source>Read C&amp;odes</source>
        <translation>读取条码(&amp;O)</translation>
    </message>
    <message>
        <source>Save with &amp;Layers...</source>
        <translation>带图层保存(&amp;L)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Y</source>
        <translation>Ctrl+Shift+Y</translation>
    </message>
    <message>
        <source>Back&amp;drop...</source>
        <translation>背景(&amp;D)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+B</source>
        <translation>Ctrl+Shift+B</translation>
    </message>
    <message>
        <source>H&amp;ide Text...</source>
        <translation>隐藏文字(&amp;I)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+X</source>
        <translation>Ctrl+Shift+X</translation>
    </message>
    <message>
        <source>Rotate Ri&amp;ght</source>
        <translation>向右旋转(&amp;G)</translation>
    </message>
    <message>
        <source>Last Area</source>
        <translation>上次的区域</translation>
    </message>
    <message>
        <source>Capture Last Area</source>
        <translation>截取上次的区域</translation>
    </message>
    <message>
        <source>Active Window</source>
        <translation>活动窗口</translation>
    </message>
    <message>
        <source>Capture Active Window</source>
        <translation>截取活动窗口</translation>
    </message>
    <message>
        <source>Monitor</source>
        <translation>显示器</translation>
    </message>
    <message>
        <source>Capture Monitor</source>
        <translation>截取显示器</translation>
    </message>
    <message>
        <source>Full Screen to a File</source>
        <translation>全屏到文件</translation>
    </message>
    <message>
        <source>Capture Full Screen to a File</source>
        <translation>截取全屏到文件</translation>
    </message>
    <message>
        <source>No hot key does this.</source>
        <translation>没有热键执行此操作。</translation>
    </message>
    <message>
        <source>Hot key: %1</source>
        <translation>热键：%1</translation>
    </message>
    <message>
        <source>The program is just starting.</source>
        <translation>程序正在启动。</translation>
    </message>
    <message>
        <source>%1 is taken by another program.</source>
        <translation>%1 已被其他程序占用。</translation>
    </message>
    <message>
        <source>Pi&amp;n to the Screen</source>
        <translation>钉在屏幕上(&amp;N)</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>缩放</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>图片大小</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>放大(&amp;I)</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>缩小(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Real Size</source>
        <translation>实际大小(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Fit to the Window</source>
        <translation>适合窗口(&amp;F)</translation>
    </message>
    <message>
        <source>Ctrl+9</source>
        <translation>Ctrl+9</translation>
    </message>
    <message>
        <source>&amp;Zoom...</source>
        <translation>缩放(&amp;Z)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+M</source>
        <translation>Ctrl+Shift+M</translation>
    </message>
    <message>
        <source>&amp;Sharp Pixels when Enlarged</source>
        <translation>放大时像素锐利(&amp;S)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+P</source>
        <translation>Ctrl+Shift+P</translation>
    </message>
    <message>
        <source>Next Pin</source>
        <translation>下一张钉住的图片</translation>
    </message>
    <message>
        <source>Ctrl+Shift+N</source>
        <translation>Ctrl+Shift+N</translation>
    </message>
    <message>
        <source>Close All Pins</source>
        <translation>关闭所有钉住的图片</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>Close Ot&amp;hers</source>
        <translation>关闭其他(&amp;H)</translation>
    </message>
    <message>
        <source>Open &amp;Folder</source>
        <translation>打开文件夹(&amp;F)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+O</source>
        <translation>Ctrl+Shift+O</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>粘贴(&amp;P)</translation>
    </message>
    <message>
        <source>Ctrl+V</source>
        <translation>Ctrl+V</translation>
    </message>
    <message>
        <source>Line &amp;Colour...</source>
        <translation>线条颜色(&amp;C)...</translation>
    </message>
    <message>
        <source>&amp;Style...</source>
        <translation>样式(&amp;S)...</translation>
    </message>
    <message>
        <source>Line &amp;Width...</source>
        <translation>线条宽度(&amp;W)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+I</source>
        <translation>Ctrl+Shift+I</translation>
    </message>
    <message>
        <source>&amp;Font...</source>
        <translation>字体(&amp;F)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+F</source>
        <translation>Ctrl+Shift+F</translation>
    </message>
    <message>
        <source>Font Si&amp;ze...</source>
        <translation>字号(&amp;Z)...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+U</source>
        <translation>Ctrl+Shift+U</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>工具(&amp;T)</translation>
    </message>
    <message>
        <source>Ctrl+Shift+D</source>
        <translation>Ctrl+Shift+D</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>The program goes on in the tray. &quot;Quit&quot; in the menu there ends it.</source>
        <translation>程序仍在托盘中运行。在托盘菜单中选择“退出”即可结束程序。</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>最近使用的文件(&amp;R)</translation>
    </message>
</context>
<context>
    <name>MarkingOverlay</name>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Read the text</source>
        <translation>读取文字</translation>
    </message>
    <message>
        <source>Take after a countdown</source>
        <translation>倒计时后截取</translation>
    </message>
    <message>
        <source>Last area again</source>
        <translation>再次使用上次的区域</translation>
    </message>
    <message>
        <source>Nothing has been marked here before</source>
        <translation>此前没有选过区域</translation>
    </message>
    <message>
        <source>%1 is copied</source>
        <translation>已复制 %1</translation>
    </message>
    <message>
        <source>Copy the colour %1</source>
        <translation>复制颜色 %1</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>钉住</translation>
    </message>
</context>
<context>
    <name>MenuCapture</name>
    <message>
        <source>The menu gave no picture</source>
        <translation>未能获取菜单的图像</translation>
    </message>
    <message>
        <source>Open a menu, and let the pointer rest on it</source>
        <translation>打开一个菜单，并将指针停在上面</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>gives up</source>
        <translation>放弃</translation>
    </message>
</context>
<context>
    <name>NameTemplate</name>
    <message>
        <source>Character %1: &quot;}&quot; without a &quot;{&quot; before it. Double it to have the brace itself.</source>
        <translation>第 %1 个字符：“}”之前没有“{”。要写括号本身，请写两次。</translation>
    </message>
    <message>
        <source>Character %1: &quot;{&quot; without a &quot;}&quot; behind it. Double it to have the brace itself.</source>
        <translation>第 %1 个字符：“{”之后没有“}”。要写括号本身，请写两次。</translation>
    </message>
    <message>
        <source>Character %1: {%2} is not known.</source>
        <translation>第 %1 个字符：{%2} 无法识别。</translation>
    </message>
    <message>
        <source>Character %1: {%2} takes no &quot;%3&quot;.</source>
        <translation>第 %1 个字符：{%2} 不能带“%3”。</translation>
    </message>
    <message>
        <source>Character %1: the quote in {%2} is not closed.</source>
        <translation>第 %1 个字符：{%2} 中的引号没有闭合。</translation>
    </message>
</context>
<context>
    <name>NoticeBar</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>PictureIntake</name>
    <message>
        <source>This is text, and no picture.</source>
        <translation>这是文字，不是图片。</translation>
    </message>
    <message>
        <source>There is no picture that can be read.</source>
        <translation>没有可读取的图片。</translation>
    </message>
    <message>
        <source>Only the first %1 pictures were opened; %2 more were left out.</source>
        <translation>只打开了前 %1 张图片，另有 %2 张未打开。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not on this computer. Nothing was fetched; save the picture first, and open it then.</source>
        <translation>“%1”不在此计算机上。未下载任何内容；请先保存图片，然后再打开。</translation>
    </message>
    <message>
        <source>There are no pictures in the folder &quot;%1&quot;.</source>
        <translation>文件夹“%1”中没有图片。</translation>
    </message>
    <message>
        <source>Files that are no pictures were not opened: %1.</source>
        <translation>未打开非图片文件：%1 个。</translation>
    </message>
    <message>
        <source>There is nothing on the clipboard.</source>
        <translation>剪贴板中没有内容。</translation>
    </message>
</context>
<context>
    <name>PictureReading</name>
    <message>
        <source>Reading the text...</source>
        <translation>正在识别文字...</translation>
    </message>
    <message numerus="yes">
        <source>%n character(s) copied: %1</source>
        <translation>
            <numerusform>已复制 %n 个字符：%1</numerusform>
        </translation>
    </message>
    <message>
        <source>No text was found.</source>
        <translation>没有找到文字。</translation>
    </message>
    <message>
        <source>Texts in your language are read better with the package %1.</source>
        <translation>安装软件包 %1 后，可以更好地识别您的语言的文字。</translation>
    </message>
    <message>
        <source>Reading codes...</source>
        <translation>正在读取条码...</translation>
    </message>
    <message>
        <source>No QR or bar code was found.</source>
        <translation>没有找到二维码或条形码。</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>打开(&amp;O)</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1（%2/%3）</translation>
    </message>
    <message>
        <source>Nothing was found that you may want to hide. Look at the picture yourself: recognition can miss something.</source>
        <translation>没有找到您可能想隐藏的内容。请自己再看一遍图片：文字识别可能会有遗漏。</translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) to hide found in %1.</source>
        <translation>
            <numerusform>在 %1 中找到 %n 处可以隐藏的内容。</numerusform>
        </translation>
    </message>
    <message>
        <source>Sh&amp;ow</source>
        <translation>显示(&amp;S)</translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) hidden. Look at the picture: recognition can miss something.</source>
        <translation>
            <numerusform>已隐藏 %n 处。请检查图片：文字识别可能会有遗漏。</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was hidden: the picture was changed or closed meanwhile.</source>
        <translation>没有隐藏任何内容：图片在此期间已被修改或关闭。</translation>
    </message>
    <message>
        <source>The picture is not there yet. Try again when it is shown.</source>
        <translation>图片尚未载入。请在其显示后重试。</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>复制(&amp;Y)</translation>
    </message>
    <message>
        <source>The text was not read.</source>
        <translation>文字未识别。</translation>
    </message>
</context>
<context>
    <name>Pictures</name>
    <message>
        <source>The picture shows the visible part of the window: this desktop keeps no pictures of what is covered or lies beyond the screen.</source>
        <translation>图片显示的是窗口的可见部分：此桌面不保留被遮挡或位于屏幕之外的内容。</translation>
    </message>
</context>
<context>
    <name>Pin</name>
    <message>
        <source>%1 x %2 pixels, zoom %3, opacity %4</source>
        <translation>%1 x %2 像素，缩放 %3，不透明度 %4</translation>
    </message>
    <message>
        <source>This desktop shows no translucent windows</source>
        <translation>此桌面不显示半透明窗口</translation>
    </message>
    <message>
        <source>Opacity %1</source>
        <translation>不透明度 %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Mark Up in a Tab</source>
        <translation>在标签页中标注(&amp;M)</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>放大(&amp;I)</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>缩小(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Real Size</source>
        <translation>实际大小(&amp;R)</translation>
    </message>
    <message>
        <source>More &amp;Translucent</source>
        <translation>更透明(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Less Translucent</source>
        <translation>更不透明(&amp;L)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Close &amp;All Pins</source>
        <translation>关闭所有钉住的图片(&amp;A)</translation>
    </message>
    <message>
        <source>Pinned picture</source>
        <translation>钉住的图片</translation>
    </message>
    <message>
        <source>Pinned picture: %1</source>
        <translation>钉住的图片：%1</translation>
    </message>
</context>
<context>
    <name>Pins</name>
    <message>
        <source>Nothing is pinned to the screen.</source>
        <translation>屏幕上没有钉住的图片。</translation>
    </message>
    <message>
        <source>Keeping the pins...</source>
        <translation>正在保留钉住的图片...</translation>
    </message>
    <message>
        <source>The pins can&apos;t be kept for the next start: %1</source>
        <translation>无法为下次启动保留钉住的图片：%1</translation>
    </message>
</context>
<context>
    <name>PortalCast</name>
    <message>
        <source>The desktop did not show its screens in time.</source>
        <translation>桌面没有及时显示其屏幕。</translation>
    </message>
    <message>
        <source>The desktop&apos;s screens can&apos;t be watched: PipeWire gives no pictures. Is it running?</source>
        <translation>无法观察桌面的屏幕：PipeWire 没有提供图像。它在运行吗？</translation>
    </message>
    <message>
        <source>This desktop lets no program watch its screens.</source>
        <translation>此桌面不允许程序观察其屏幕。</translation>
    </message>
    <message>
        <source>The desktop&apos;s portal failed before it showed the screens. Try again.</source>
        <translation>桌面的门户服务在显示屏幕之前发生故障。请重试。</translation>
    </message>
    <message>
        <source>You have cancelled the desktop&apos;s question, so the screen can&apos;t be watched.</source>
        <translation>您取消了桌面的询问，因此无法观察屏幕。</translation>
    </message>
    <message>
        <source>The desktop has stopped showing its screens.</source>
        <translation>桌面已停止显示其屏幕。</translation>
    </message>
    <message>
        <source>The desktop failed to show its screens. Try again.</source>
        <translation>桌面未能显示其屏幕。请重试。</translation>
    </message>
</context>
<context>
    <name>PortalRoute</name>
    <message>
        <source>The desktop did not give its picture in time.</source>
        <translation>桌面没有及时给出画面。</translation>
    </message>
    <message>
        <source>The desktop&apos;s portal failed before it gave a picture. Try again.</source>
        <translation>桌面的门户服务在给出画面之前失败了。请重试。</translation>
    </message>
    <message>
        <source>You have cancelled the desktop&apos;s question, so there is no picture.</source>
        <translation>您取消了桌面的询问，因此没有画面。</translation>
    </message>
    <message>
        <source>The desktop failed to take a picture of the screen.</source>
        <translation>桌面未能截取屏幕。</translation>
    </message>
    <message>
        <source>The file with the desktop&apos;s picture is not there.</source>
        <translation>桌面画面的文件不存在。</translation>
    </message>
    <message>
        <source>What the desktop gave is no picture of its screens.</source>
        <translation>桌面给出的不是其屏幕的画面。</translation>
    </message>
    <message>
        <source>This desktop gives programs no pictures of the screen: its portal has no part for that, or that does not start.</source>
        <translation>此桌面不向程序提供屏幕画面：其门户没有相应的部分，或者该部分无法启动。</translation>
    </message>
    <message>
        <source>The desktop lets this program take no pictures of the screen, since that has been refused. It can be changed in the desktop&apos;s settings for applications, on GNOME under Apps, Snap Workbench, where they list it; else have the desktop ask again.</source>
        <translation>桌面不允许此程序截取屏幕，因为此前已被拒绝。可以在桌面的应用程序设置中更改（GNOME：应用，Snap Workbench，如果列出了此项）；否则请让桌面再次询问。</translation>
    </message>
</context>
<context>
    <name>PrivateFolder</name>
    <message>
        <source>It belongs to somebody else, or others may write to it.</source>
        <translation>它属于其他用户，或其他用户可以写入。</translation>
    </message>
</context>
<context>
    <name>ProgressPlate</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Cancel (Esc)</source>
        <translation>取消 (Esc)</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 已存在。
要替换它吗？</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
</context>
<context>
    <name>QPictureDocument</name>
    <message>
        <source>untitled%1</source>
        <translation>未命名%1</translation>
    </message>
    <message>
        <source>There is no picture.</source>
        <translation>没有图片。</translation>
    </message>
    <message>
        <source>This is not a file.</source>
        <translation>这不是文件。</translation>
    </message>
    <message>
        <source>The drawing refers to other files, which are not read.</source>
        <translation>该图形引用了其他文件，这些文件不会被读取。</translation>
    </message>
    <message>
        <source>The drawing is damaged.</source>
        <translation>绘图已损坏。</translation>
    </message>
    <message>
        <source>The drawing is too complicated.</source>
        <translation>该图形过于复杂。</translation>
    </message>
    <message>
        <source>The picture needs %1 of memory, and only %2 can be used now.</source>
        <translation>该图片需要 %1 内存，目前只有 %2 可用。</translation>
    </message>
    <message>
        <source>The drawing can&apos;t be unpacked or is too large.</source>
        <translation>该图形无法解压缩或过大。</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>A file of this kind can&apos;t be wider or higher than %1 pixels.</source>
        <translation>此类文件的宽度或高度不能超过 %1 像素。</translation>
    </message>
</context>
<context>
    <name>RecentFiles</name>
    <message>
        <source>&quot;%1&quot; is not there any more.</source>
        <translation>“%1”已不存在。</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>清空(&amp;C)</translation>
    </message>
</context>
<context>
    <name>RegionOverlay</name>
    <message>
        <source>Finish(Enter)</source>
        <translation>完成 (Enter)</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清除</translation>
    </message>
    <message>
        <source>Drag: mark an area
Return: take it
Ctrl+C: copy it     Ctrl+S: save it     T: read its text
R: the last area again     C: copy the colour at the pointer
Esc: give up</source>
        <translation>拖动：选择区域
Enter：截取
Ctrl+C：复制     Ctrl+S：保存     T：读取文字
R：再次使用上次的区域     C：复制指针处的颜色
Esc：放弃</translation>
    </message>
</context>
<context>
    <name>ResizeDialog</name>
    <message>
        <source>Resize</source>
        <translation>调整大小</translation>
    </message>
    <message>
        <source>&amp;Keep proportions</source>
        <translation>保持比例(&amp;K)</translation>
    </message>
    <message>
        <source>pixels</source>
        <translation>像素</translation>
    </message>
    <message>
        <source>per cent</source>
        <translation>百分比</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>宽度(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>高度(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Unit</source>
        <translation>单位(&amp;U)</translation>
    </message>
</context>
<context>
    <name>ScreencopyRoute</name>
    <message>
        <source>The desktop did not give its picture in time.</source>
        <translation>桌面没有及时给出画面。</translation>
    </message>
</context>
<context>
    <name>ScrollCapture</name>
    <message>
        <source>Scrolling to the top</source>
        <translation>正在滚动到顶部</translation>
    </message>
    <message>
        <source>Putting it back</source>
        <translation>正在恢复原位置</translation>
    </message>
    <message>
        <source>%1 pixels</source>
        <translation>%1 像素</translation>
    </message>
    <message>
        <source>Nothing scrolls there: it was taken as it is</source>
        <translation>此处没有可滚动的内容，已按原样截取</translation>
    </message>
    <message>
        <source>The content could not be followed</source>
        <translation>无法跟踪滚动内容</translation>
    </message>
    <message>
        <source>Nothing new came for a minute</source>
        <translation>一分钟内没有新内容</translation>
    </message>
    <message>
        <source>The picture has reached its limit of %1 pixels</source>
        <translation>图片已达到 %1 像素的上限</translation>
    </message>
    <message>
        <source>The content could not be followed further</source>
        <translation>无法继续跟踪滚动内容</translation>
    </message>
    <message>
        <source>The program did not answer for a minute</source>
        <translation>程序一分钟没有响应</translation>
    </message>
    <message>
        <source>The content could not be followed further to the right</source>
        <translation>无法继续向右跟踪滚动内容</translation>
    </message>
    <message>
        <source>There is not enough memory for all of it</source>
        <translation>内存不足，无法截取全部内容</translation>
    </message>
    <message>
        <source>%1 pixels, after %2 columns</source>
        <translation>%1 像素，此前已有 %2 列像素</translation>
    </message>
    <message>
        <source>The picture has reached its limit: %1 pixels each way, and %2 million in all</source>
        <translation>图片已达到上限：每个方向 %1 像素，总共 %2 百万像素</translation>
    </message>
    <message>
        <source>What lies beside it could not be followed</source>
        <translation>旁边的内容无法跟踪</translation>
    </message>
    <message>
        <source>The content could not be put back to where it was</source>
        <translation>内容无法恢复到原来的位置</translation>
    </message>
    <message>
        <source>One click of the wheel leads too far to be followed here: make the window higher, or scroll it by hand</source>
        <translation>滚轮每格滚动得太远，无法跟踪：请将窗口调高，或者手动滚动</translation>
    </message>
    <message>
        <source>It scrolls sideways only: hold Shift to take what lies beside it</source>
        <translation>此处只能横向滚动：按住 Shift 可截取旁边的内容</translation>
    </message>
</context>
<context>
    <name>ScrolledWindow</name>
    <message>
        <source>The window left the screen</source>
        <translation>窗口已从屏幕上消失</translation>
    </message>
    <message>
        <source>The window changed its size</source>
        <translation>窗口大小已改变</translation>
    </message>
    <message>
        <source>A menu</source>
        <translation>一个菜单</translation>
    </message>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>“%1”</translation>
    </message>
    <message>
        <source>%1 is in front: waiting until it is gone</source>
        <translation>%1 挡在前面：正在等待其消失</translation>
    </message>
    <message>
        <source>%1 came in front</source>
        <translation>%1 挡在了前面</translation>
    </message>
    <message>
        <source>Let go of all keys and buttons</source>
        <translation>请松开所有按键和鼠标按钮</translation>
    </message>
    <message>
        <source>Bring the window back: its content is not where it was</source>
        <translation>请恢复该窗口：其内容不在原来的位置</translation>
    </message>
</context>
<context>
    <name>SettingsSaver</name>
    <message>
        <source>The settings can&apos;t be saved: %1</source>
        <translation>无法保存设置：%1</translation>
    </message>
</context>
<context>
    <name>SizeDialog</name>
    <message>
        <source>A picture has 32,767 pixels a side at most, and 400 million in all.</source>
        <translation>图片每边最多 32,767 像素，总共最多 4 亿像素。</translation>
    </message>
    <message>
        <source>There is too little memory for that.</source>
        <translation>内存不足，无法做到。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Result: %1 × %2 pixels</source>
        <translation>结果：%1 × %2 像素</translation>
    </message>
</context>
<context>
    <name>SnapWb</name>
    <message>
        <source>Show this help.</source>
        <translation>显示此帮助。</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>Write the picture to FILE, a PNG file; - is standard output.</source>
        <translation>将图片写入 PNG 文件 FILE；- 表示标准输出。</translation>
    </message>
    <message>
        <source>Replace FILE if there is one.</source>
        <translation>若 FILE 已存在则替换。</translation>
    </message>
    <message>
        <source>Copy the picture to the clipboard.</source>
        <translation>将图片复制到剪贴板。</translation>
    </message>
    <message>
        <source>Wait N seconds before.</source>
        <translation>先等待 N 秒。</translation>
    </message>
    <message>
        <source>Show the pointer in the picture.</source>
        <translation>在图片中显示指针。</translation>
    </message>
    <message>
        <source>Open picture files, each in a tab.</source>
        <translation>打开图片文件，每个文件一个标签页。</translation>
    </message>
    <message>
        <source>Tell how far a grab has come.</source>
        <translation>显示截取进行到哪一步。</translation>
    </message>
    <message>
        <source>Usage:</source>
        <translation>用法：</translation>
    </message>
    <message>
        <source>One kind of picture is needed: %1.</source>
        <translation>需要指定一种截取方式：%1。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; does not end with .png, and other formats are not written.</source>
        <translation>“%1”不以 .png 结尾，不支持写入其他格式。</translation>
    </message>
    <message>
        <source>The delay is a number of seconds, from 0 to %1.</source>
        <translation>延迟为秒数，范围 0 到 %1。</translation>
    </message>
    <message>
        <source>The option --%1 belongs to &quot;grab&quot;.</source>
        <translation>选项 --%1 只用于“grab”。</translation>
    </message>
    <message>
        <source>&quot;grab KIND&quot;, &quot;open FILE...&quot; or &quot;state&quot; is needed; --help tells more.</source>
        <translation>需要“grab KIND”、“open FILE...”或“state”；详见 --help。</translation>
    </message>
    <message>
        <source>The picture was given up.</source>
        <translation>截取已放弃。</translation>
    </message>
    <message>
        <source>Another picture is being taken.</source>
        <translation>正在截取另一张图片。</translation>
    </message>
    <message>
        <source>The program has ended.</source>
        <translation>程序已结束。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder.</source>
        <translation>“%1”是文件夹。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is there already; --force replaces it.</source>
        <translation>“%1”已存在；--force 可替换它。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be written to the folder &quot;%2&quot;.</source>
        <translation>无法将“%1”写入文件夹“%2”。</translation>
    </message>
    <message>
        <source>The program does not start.</source>
        <translation>程序无法启动。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be written.</source>
        <translation>无法写入“%1”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be read.</source>
        <translation>无法读取“%1”。</translation>
    </message>
    <message>
        <source>The program does not run.</source>
        <translation>程序没有运行。</translation>
    </message>
    <message>
        <source>There is no session bus.</source>
        <translation>没有会话总线。</translation>
    </message>
    <message>
        <source>Take a picture: %1. With neither --output nor --copy it opens in a tab. &quot;window&quot; and &quot;scroll&quot; begin the same: a click takes the window, and Ctrl+click or Return all that scrolls in it.</source>
        <translation>截取图片：%1。若既无 --output 也无 --copy，则在标签页中打开。“window”和“scroll”的开始方式相同：单击抓取窗口，Ctrl+单击或回车抓取其中滚动的全部内容。</translation>
    </message>
    <message>
        <source>--force belongs to --output.</source>
        <translation>--force 只与 --output 一起使用。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one word too many.</source>
        <translation>多了一个词：“%1”。</translation>
    </message>
    <message>
        <source>--%1 can be there only once.</source>
        <translation>--%1 只能出现一次。</translation>
    </message>
</context>
<context>
    <name>StartPanel</name>
    <message>
        <source>Take a picture of the screen</source>
        <translation>截取屏幕</translation>
    </message>
    <message>
        <source>These keys work in front of any program.</source>
        <translation>这些快捷键在任何程序前都有效。</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>矩形</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>窗口</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>全屏</translation>
    </message>
    <message>
        <source>Or mark up a picture that you have: drop it here, or</source>
        <translation>或标注已有的图片：拖放到这里，或者</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>打开...</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
</context>
<context>
    <name>StyleControls</name>
    <message>
        <source>%1 px</source>
        <translation>%1 像素</translation>
    </message>
    <message>
        <source>Next Number</source>
        <translation>下一个编号</translation>
    </message>
    <message>
        <source>Number of the next marker, or of the one that is chosen:</source>
        <translation>下一个编号标记，或所选编号标记的编号：</translation>
    </message>
</context>
<context>
    <name>StyleMenu</name>
    <message>
        <source>Fill</source>
        <translation>填充</translation>
    </message>
    <message>
        <source>&amp;No Fill</source>
        <translation>无填充(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Translucent Fill</source>
        <translation>半透明填充(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Solid Fill</source>
        <translation>实心填充(&amp;S)</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>线条</translation>
    </message>
    <message>
        <source>S&amp;olid Line</source>
        <translation>实线(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Dashed Line</source>
        <translation>虚线(&amp;D)</translation>
    </message>
    <message>
        <source>Dott&amp;ed Line</source>
        <translation>点线(&amp;E)</translation>
    </message>
    <message>
        <source>Arrow Heads</source>
        <translation>箭头</translation>
    </message>
    <message>
        <source>One &amp;Head</source>
        <translation>单箭头(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Both Heads</source>
        <translation>双箭头(&amp;B)</translation>
    </message>
    <message>
        <source>Open He&amp;ad</source>
        <translation>开口箭头(&amp;A)</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>&amp;Plain Text</source>
        <translation>普通文字(&amp;P)</translation>
    </message>
    <message>
        <source>Text on a &amp;Ground</source>
        <translation>带底色文字(&amp;G)</translation>
    </message>
    <message>
        <source>O&amp;utlined Text</source>
        <translation>描边文字(&amp;U)</translation>
    </message>
    <message>
        <source>Shado&amp;w</source>
        <translation>阴影(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Round Spotlight</source>
        <translation>圆形聚光灯(&amp;R)</translation>
    </message>
    <message>
        <source>Ne&amp;xt Number...</source>
        <translation>下一个编号(&amp;X)...</translation>
    </message>
</context>
<context>
    <name>TabWidget</name>
    <message>
        <source>Close Tab</source>
        <translation>关闭标签页</translation>
    </message>
</context>
<context>
    <name>TakeButtons</name>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Copy the picture (Ctrl+C)</source>
        <translation>复制图片 (Ctrl+C)</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Save the picture as a file (Ctrl+S)</source>
        <translation>将图片保存为文件 (Ctrl+S)</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Read the text in the picture, and copy it (T)</source>
        <translation>读取图片中的文字并复制 (T)</translation>
    </message>
    <message>
        <source>Take</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>Take the picture (Return)</source>
        <translation>截取图片 (Enter)</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>钉住</translation>
    </message>
    <message>
        <source>Keep the picture above all windows (P)</source>
        <translation>将图片保持在所有窗口之上 (P)</translation>
    </message>
</context>
<context>
    <name>TextReader</name>
    <message>
        <source>Reading text needs the package %1.</source>
        <translation>识别文字需要软件包 %1。</translation>
    </message>
    <message>
        <source>There is not enough memory to read the picture.</source>
        <translation>内存不足，无法识别图片。</translation>
    </message>
    <message>
        <source>Reading took longer than %1 seconds and was given up. A part of the picture takes less.</source>
        <translation>识别超过 %1 秒，已放弃。只识别图片的一部分会更快。</translation>
    </message>
</context>
<context>
    <name>UnsavedPictures</name>
    <message>
        <source>Pictures that had not been saved are back: %1</source>
        <translation>未保存的图片已恢复：%1</translation>
    </message>
    <message>
        <source>A picture that had not been saved is damaged. What is left of it is in %1.</source>
        <translation>一张未保存的图片已损坏，剩余部分在 %1。</translation>
    </message>
    <message>
        <source>A later version of this program has left a picture in %1. It was not touched.</source>
        <translation>此程序的较新版本在 %1 中留下了一张图片，未作改动。</translation>
    </message>
    <message>
        <source>What is not saved can&apos;t be kept for the next start at the moment: %1</source>
        <translation>目前无法为下次启动保留未保存的内容：%1</translation>
    </message>
    <message>
        <source>Bringing back &quot;%1&quot;...</source>
        <translation>正在恢复“%1”...</translation>
    </message>
</context>
<context>
    <name>WaylandHands</name>
    <message>
        <source>To turn the wheel over what is captured</source>
        <translation>用于在截取的内容上滚动滚轮</translation>
    </message>
</context>
<context>
    <name>WindowFace</name>
    <message>
        <source>More tools</source>
        <translation>更多工具</translation>
    </message>
    <message>
        <source>Ctrl+Shift+E</source>
        <translation>Ctrl+Shift+E</translation>
    </message>
    <message>
        <source>More commands</source>
        <translation>更多命令</translation>
    </message>
    <message>
        <source>Ctrl+Shift+G</source>
        <translation>Ctrl+Shift+G</translation>
    </message>
    <message>
        <source>More styles</source>
        <translation>更多样式</translation>
    </message>
    <message>
        <source>Ctrl+Shift+T</source>
        <translation>Ctrl+Shift+T</translation>
    </message>
</context>
<context>
    <name>WindowsPreView</name>
    <message>
        <source>All Windows</source>
        <translation>所有窗口</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>可见</translation>
    </message>
    <message>
        <source>All</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>Filter by name</source>
        <translation>按名称筛选</translation>
    </message>
    <message>
        <source>Size of the thumbnails</source>
        <translation>缩略图大小</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Snap</source>
        <translation>截取</translation>
    </message>
    <message>
        <source>There is no window to show.</source>
        <translation>没有可显示的窗口。</translation>
    </message>
    <message>
        <source>No window&apos;s application or title contains this.</source>
        <translation>没有窗口的应用程序名或标题包含此内容。</translation>
    </message>
</context>
<context>
    <name>Workbench</name>
    <message>
        <source>Opening &quot;%1&quot;...</source>
        <translation>正在打开“%1”...</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be shown: %2</source>
        <translation>无法显示“%1”：%2</translation>
    </message>
    <message>
        <source>Showing &quot;%1&quot;...</source>
        <translation>正在显示“%1”...</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>“%1”：%2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was closed meanwhile.</source>
        <translation>“%1”已被关闭。</translation>
    </message>
    <message>
        <source>%1 × %2 px</source>
        <translation>%1 × %2 像素</translation>
    </message>
</context>
<context>
    <name>ZoomBox</name>
    <message>
        <source>Fit</source>
        <translation>适合</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>ZoomControls</name>
    <message>
        <source>%1 × %2 px</source>
        <translation>%1 × %2 像素</translation>
    </message>
</context>
<context>
    <name>dlgFreeHand</name>
    <message>
        <source>Finish(Enter)</source>
        <translation>完成 (Enter)</translation>
    </message>
    <message>
        <source>Delete last point</source>
        <translation>删除最后一点</translation>
    </message>
    <message>
        <source>Clear all points</source>
        <translation>清除所有点</translation>
    </message>
    <message>
        <source>Click: set a corner     Drag: draw freehand
Return, a double click: close it and take it
Ctrl+C: copy it     Ctrl+S: save it     T: read its text
R: the last area again     C: copy the colour at the pointer
Esc: give up</source>
        <translation>单击：设置顶点     拖动：徒手绘制
Enter、双击：闭合并截取
Ctrl+C：复制     Ctrl+S：保存     T：读取文字
R：再次使用上次的区域     C：复制指针处的颜色
Esc：放弃</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>%1 is running already, but does not answer. End that program, and then start it again.</source>
        <translation>%1 已在运行，但没有响应。请先结束该程序，然后重新启动。</translation>
    </message>
    <message>
        <source>SnapWorkbench.xml is missing so that it can not work properly</source>
        <translation>缺少 SnapWorkbench.xml，无法正常工作</translation>
    </message>
    <message>
        <source>%1 can&apos;t start: %2 is missing or damaged. Install the program again.</source>
        <translation>%1 无法启动：%2 缺失或已损坏。请重新安装程序。</translation>
    </message>
    <message>
        <source>%1 can&apos;t start, since it can&apos;t write %2: %3</source>
        <translation>%1 无法启动，因为无法写入 %2：%3</translation>
    </message>
    <message>
        <source>%1 was being saved when the program was cut off, and has been changed since then. What was to be saved is in %2.</source>
        <translation>程序中断时正在保存 %1，此后该文件已被更改。要保存的内容在 %2 中。</translation>
    </message>
</context>
</TS>
